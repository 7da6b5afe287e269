#include "input_helper/service.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <optional>
#include <string>
#include <utility>

#include "fake_system.h"
#include "input_helper/protocol/packet_socket.h"

namespace vorrin::input_helper {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

/// The sessions are locked, for this machine may have no /dev/uinput; so a connection tells that
/// its session is away, and ends for want of devices as soon as it is at work.
class ServiceTest : public testing::Test {
 protected:
  ServiceTest() { system.sessions["own"].isLocked = true; }

  /// Has a connection, by a right that lasts.
  void connect() {
    system.authorization = {true, false, false};
    serve(system.ask("Connect"));
  }

  void serve(Answer answer) {
    ASSERT_TRUE(answer.isGiven) << answer.error;
    socket = std::move(answer.socket);
    EXPECT_EQ(next(), FromHelper(Availability{Listening::sessionAway}));
  }

  /// What the helper says next; nothing when it ends.
  std::optional<FromHelper> next() {
    Packet packet;
    Received received = Received::nothing;
    EXPECT_TRUE(system.until([&] {
      received = receivePacket(socket.get(), packet);
      return received != Received::nothing;
    }));
    return decodeFromHelper(packet.view());
  }

  void expectEnd(EndReason reason) { EXPECT_EQ(next(), FromHelper(Ending{reason})); }

  /// Nothing is said, and what the service is asked after this it takes after everything before.
  void expectSilence() {
    EXPECT_FALSE(system.ask("Connect").isGiven) << "one program is served already";
    Packet packet;
    EXPECT_EQ(receivePacket(socket.get(), packet), Received::nothing);
  }

  void change(bool FakeSession::*flag, bool value, const char* property) {
    system.sessions["own"].*flag = value;
    system.tellChange("own", property);
  }

  void expectRefusal(const std::string& words) {
    const auto answer = system.ask("Connect", true);
    EXPECT_FALSE(answer.isGiven);
    EXPECT_THAT(answer.error, HasSubstr(words));
    EXPECT_THAT(system.questions(), IsEmpty());
  }

  void callUntilAsked(const char* method) {
    system.call(method, true);
    ASSERT_TRUE(system.until([this] { return system.question != nullptr; }));
  }

  /// What the call brings once the user has said yes or no.
  Answer answered(bool isGiven) {
    system.answer.reset();
    system.answerQuestion(isGiven);
    EXPECT_TRUE(system.until([this] { return system.answer.has_value(); }));
    return system.answer ? std::move(*system.answer) : Answer();
  }

  FakeSystem system;
  FileDescriptor socket;
};

TEST_F(ServiceTest, only_a_user_s_session_in_front_at_the_first_seat_is_served) {
  system.authorization = {true, false, false};
  const auto own = system.sessions["own"];
  const auto refuse = [&](const std::function<void(FakeSession&)>& spoil) {
    system.sessions["own"] = own;
    spoil(system.sessions["own"]);
    expectRefusal("only a session in front at the first seat");
  };
  refuse([](FakeSession& session) { session.isRemote = true; });
  refuse([](FakeSession& session) { session.isActive = false; });
  refuse([](FakeSession& session) { session.seat = "seat1"; });
  refuse([](FakeSession& session) { session.seat = ""; });
  refuse([](FakeSession& session) { session.sessionClass = "greeter"; });
  refuse([](FakeSession& session) { session.user += 1; });
  system.sessions.clear();
  expectRefusal("only a session in front at the first seat");
}

TEST_F(ServiceTest, a_program_of_the_user_s_service_manager_counts_to_the_session_on_the_display) {
  system.hasOwnSession = false;
  connect();
}

TEST_F(ServiceTest, without_a_login_manager_nobody_is_served) {
  system.authorization = {true, false, false};
  system.leaveLoginManager();
  expectRefusal("only a session in front at the first seat");
}

TEST_F(ServiceTest, what_polkit_refuses_or_does_not_say_is_refused) {
  system.authorization = {false, false, false};
  expectRefusal("not given");
  system.authorization.reset();
  expectRefusal("polkit does not say");
}

TEST_F(ServiceTest, the_user_is_asked_only_with_leave_and_once_at_a_time) {
  EXPECT_THAT(system.ask("Connect").error, HasSubstr("not given"));
  EXPECT_THAT(system.questions(), IsEmpty());
  callUntilAsked("Connect");
  EXPECT_THAT(system.questions(), ElementsAre(actions::connect));
  EXPECT_THAT(system.ask("Connect", true).error, HasSubstr("not answered yet"));
  serve(answered(true));
}

TEST_F(ServiceTest, a_no_of_the_user_s_is_a_no) {
  callUntilAsked("Connect");
  EXPECT_THAT(answered(false).error, HasSubstr("not given"));
  EXPECT_EQ(system.questions().size(), 1U);
}

TEST_F(ServiceTest, a_question_is_withdrawn_when_its_session_leaves_the_front_or_its_program_goes) {
  callUntilAsked("Connect");
  change(&FakeSession::isActive, false, "Active");
  EXPECT_TRUE(system.until([this] { return system.questionsWithdrawn == 1 && system.answer; }));
  EXPECT_FALSE(system.answer->isGiven);
  change(&FakeSession::isActive, true, "Active");
  system.question = sd_bus_message_unref(system.question);
  callUntilAsked("Connect");
  system.leaveCaller();
  EXPECT_TRUE(system.until([this] { return system.questionsWithdrawn == 2; }));
}

TEST_F(ServiceTest, allowing_for_good_is_asked_about_and_ends_all_questions) {
  EXPECT_FALSE(system.ask("AllowForGood").isGiven);
  callUntilAsked("AllowForGood");
  EXPECT_THAT(system.questions(), ElementsAre(actions::allow));
  EXPECT_TRUE(answered(true).isGiven);
  serve(system.ask("Connect"));
}

class Allowed : public ServiceTest {
 protected:
  Allowed() {
    system.authorization = {true, false, false};
    EXPECT_TRUE(system.ask("AllowForGood").isGiven);
    system.authorization = {false, true, false};
  }
};

TEST_F(Allowed, a_plain_no_of_polkit_s_still_holds) {
  system.authorization = {false, false, false};
  expectRefusal("not given");
}

TEST_F(Allowed, another_user_who_got_the_number_is_not) {
  system.sessions["own"].userName = "visitor";
  EXPECT_FALSE(system.ask("Connect").isGiven);
}

TEST_F(Allowed, asking_every_time_lets_go_at_once) {
  serve(system.ask("Connect"));
  EXPECT_TRUE(system.ask("AskEveryTime").isGiven);
  expectEnd(EndReason::revoked);
  EXPECT_THAT(system.ask("Connect").error, HasSubstr("not given"));
}

TEST_F(Allowed, taking_back_lets_go_at_once_and_ends_all_questions) {
  serve(system.ask("Connect"));
  system.authorization.reset();
  EXPECT_TRUE(system.ask("TakeBack").isGiven) << "whatever polkit says";
  expectEnd(EndReason::revoked);
  system.authorization = {true, false, false};
  expectRefusal("took the permission back");
  EXPECT_TRUE(system.ask("AskEveryTime").isGiven);
  serve(system.ask("Connect"));
}

TEST_F(ServiceTest, one_program_of_a_session_is_served) {
  connect();
  EXPECT_THAT(system.ask("Connect").error, HasSubstr("another program of this session"));
  socket = {};
  EXPECT_TRUE(system.until([this] { return system.ask("Connect").isGiven; }));
}

TEST_F(ServiceTest, a_rule_that_is_gone_takes_back_at_once) {
  connect();
  system.authorization = {false, true, false};
  system.tellAuthorityChanged();
  expectEnd(EndReason::revoked);
}

TEST_F(ServiceTest, what_was_given_after_a_question_lasts_until_polkit_says_no) {
  system.authorization = {true, false, true};
  serve(system.ask("Connect"));
  system.authorization = {false, true, false};
  system.tellAuthorityChanged();
  expectSilence();
  system.authorization = {false, false, false};
  system.tellAuthorityChanged();
  expectEnd(EndReason::revoked);
}

TEST_F(ServiceTest, what_cannot_be_known_any_more_ends_it) {
  connect();
  system.authorization.reset();
  system.tellAuthorityChanged();
  expectEnd(EndReason::revoked);
  ASSERT_NO_FATAL_FAILURE(connect());
  system.tellRemoved("own");
  expectEnd(EndReason::revoked);
  ASSERT_NO_FATAL_FAILURE(connect());
  system.leaveCaller();
  expectEnd(EndReason::revoked);
  ASSERT_NO_FATAL_FAILURE(connect());
  system.leaveLoginManager();
  expectEnd(EndReason::revoked);
}

TEST_F(ServiceTest, without_the_bus_it_ends) {
  connect();
  system.endBus();
  EXPECT_TRUE(system.untilServiceEnded());
  EXPECT_FALSE(next()) << "the end of the connection";
}

TEST_F(ServiceTest, it_works_only_in_a_session_that_is_in_front_unlocked_and_awake) {
  connect();
  system.tell("own", "Lock");
  change(&FakeSession::isActive, false, "Active");
  system.tellSleep(true);
  system.tell("own", "Unlock");
  expectSilence();
  change(&FakeSession::isActive, true, "Active");
  expectSilence();
  system.tellSleep(false);
  expectSilence();
  // The hint of the desktop's, on its own.
  change(&FakeSession::isLocked, false, "LockedHint");
  const auto said = next();
  EXPECT_TRUE(said == FromHelper(Ending{EndReason::noDevices}) ||
              said == FromHelper(Availability{}));
}

TEST_F(ServiceTest, a_session_that_was_asked_to_lock_is_locked_until_it_is_asked_to_unlock) {
  connect();
  system.tell("own", "Lock");
  system.tell("other", "Unlock");
  expectSilence();
  system.sessions["own"].isLocked = false;
  system.tell("own", "Unlock");
  expectSilence();
}

std::string bytesOf(const ToHelper& message) {
  const auto packet = encode(message);
  return {reinterpret_cast<const char*>(packet.bytes.data()), packet.size};
}

TEST_F(ServiceTest, words_without_meaning_end_the_connection) {
  const auto configure = bytesOf(Configure{1, 1});
  for (const auto& words :
       {std::string("x"), std::string(60'000, 'x'), configure.substr(0, 3), configure + "more"}) {
    ASSERT_NO_FATAL_FAILURE(connect());
    ASSERT_GT(::send(socket.get(), words.data(), words.size(), MSG_NOSIGNAL), 0);
    EXPECT_FALSE(next()) << words.size();
  }
}

TEST_F(ServiceTest, nothing_a_program_says_wakes_a_session_that_is_away) {
  connect();
  for (const auto& message : {ToHelper(Configure{1, 0b111111}), ToHelper(Post{1, {{{2, 1}}}})}) {
    ASSERT_TRUE(sendPacket(socket.get(), encode(message)));
  }
  expectSilence();
}

}  // namespace
}  // namespace vorrin::input_helper
