#include "backend_test.h"

#include <QWindow>

namespace vorrin::helper {
namespace {

using namespace helper_protocol;
using testing::AllOf;
using testing::ContainsRegex;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST_F(BackendTest, nobody_is_asked_before_the_user_wants_it) {
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_THAT(helper.calls(), IsEmpty());
}

TEST_F(BackendTest, asking_reaches_the_helper_once) {
  EXPECT_FALSE(backend.isTrustedWithPrompt());
  EXPECT_FALSE(backend.isTrustedWithPrompt());
  EXPECT_THAT(helper.calls(), ElementsAre("ask"));
}

TEST_F(BackendTest, a_helper_that_can_make_no_devices_is_no_permission) {
  backend.isTrustedWithPrompt();
  helper.say(Ending{EndReason::noDevices});
  expectLeft("/dev/uinput");
}

TEST_F(BackendTest, a_refusal_is_told_once_and_not_asked_about_again) {
  helper.isAllowed = false;
  testing::internal::CaptureStderr();
  backend.isTrustedWithPrompt();
  EXPECT_TRUE(until([this] { return helper.calls().size() == 4; }));
  EXPECT_THAT(helper.calls(), ElementsAre("ask", "connect", "connect", "connect"));
  EXPECT_THAT(testing::internal::GetCapturedStderr(),
              AllOf(HasSubstr("in vain"), ContainsRegex("not allowed\n$"),
                    Not(ContainsRegex("not allowed.*not allowed"))));
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.calls().back(), "ask");
}

TEST_F(BackendTest, a_wish_that_comes_while_it_is_reached_silently_is_asked_about) {
  helper.isAllowed = false;
  backend.isTrustedWithPrompt();
  helper.isSilent = true;
  ASSERT_TRUE(until([this] { return helper.calls().back() == "connect"; }));
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.calls().back(), "connect") << "one at a time";
  helper.answer();
  EXPECT_EQ(helper.calls().back(), "ask");
}

TEST_F(BackendTest, a_permission_given_later_and_a_helper_gone_at_once_come_unasked) {
  helper.isAllowed = false;
  backend.isTrustedWithPrompt();
  helper.isAllowed = true;
  helper.isGone = true;
  EXPECT_TRUE(until([this] { return helper.calls().size() == 2; }));
  helper.isGone = false;
  EXPECT_TRUE(until([this] { return helper.calls().size() == 3; }));
  helper.serve();
  EXPECT_TRUE(until([this] { return backend.isTrusted(); }));
  EXPECT_THAT(helper.calls(), ElementsAre("ask", "connect", "connect"));
}

TEST_F(BackendTest, a_user_who_is_seen_in_a_session_said_to_be_away_has_the_helper_ask_anew) {
  connect();
  helper.say(Availability{Listening::sessionAway});
  QWindow window;
  window.show();
  window.requestActivate();
  EXPECT_TRUE(until([this] { return helper.calls().size() == 2; }));
  EXPECT_EQ(helper.calls().back(), "connect");
}

TEST_F(BackendTest, after_the_panic_chord_only_the_user_has_it_back) {
  makeTap();
  helper.say(Ending{EndReason::panicChord});
  expectLeft("Retry connection");
  EXPECT_TRUE(invalidated);
  backend.isTrustedWithPrompt();
  EXPECT_THAT(helper.calls(), ElementsAre("ask", "ask"));
}

TEST_F(BackendTest, a_permission_that_ended_is_taken_up_without_a_question_once_it_is_there_again) {
  makeTap();
  helper.isAllowed = false;
  helper.say(Ending{EndReason::revoked});
  EXPECT_TRUE(until([this] { return invalidated; }));
  helper.isAllowed = true;
  EXPECT_TRUE(until([this] { return helper.calls().back() == "connect"; }));
}

TEST_F(BackendTest, a_permission_taken_back_is_taken_up_by_the_user_only) {
  makeTap();
  backend.takeBack();
  EXPECT_TRUE(invalidated);
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_THAT(helper.calls(), ElementsAre("ask", "TakeBack"));
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.calls().back(), "ask");
}

TEST_F(BackendTest, allowing_for_good_connects) {
  backend.allowForGood();
  EXPECT_THAT(helper.calls(), ElementsAre("AllowForGood", "ask"));
  backend.askEveryTime();
  EXPECT_EQ(helper.calls().back(), "AskEveryTime");
}

struct BadWord : BackendTest, testing::WithParamInterface<std::string> {};
INSTANTIATE_TEST_SUITE_P(FromTheHelper, BadWord,
                         testing::Values("x", std::string(60'000, 'x'),
                                         bytesOf(KeyMoved{1, evdevTab, 1, 0}) + "more"));

TEST_P(BadWord, ends_the_connection_and_the_tap) {
  makeTap();
  helper.sayBytes(GetParam());
  expectLeft("no meaning");
  EXPECT_TRUE(invalidated);
}

}  // namespace
}  // namespace vorrin::helper
