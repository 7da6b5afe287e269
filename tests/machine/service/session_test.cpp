// The helper works for the session in front, while that is unlocked and awake, and for nobody else.

#include <algorithm>
#include <filesystem>

#include "service_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;

class ServiceSession : public MachineService {
 protected:
  /// Nothing is held, nothing read and nothing posted, whatever the main program says.
  void expectAway() {
    EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
    EXPECT_TRUE(until([this] {
      return std::ranges::count(peer->saidOf<Availability>(),
                                Availability{Listening::sessionAway}) == 1;
    }));
    watch.forget();
    for (int count = 0; count < 100; ++count) {
      peer->configure({KEY_TAB, KEY_GRAVE});
      peer->post(KEY_5);
      peer->post(0);
    }
    EXPECT_TRUE(typePassing(KEY_GRAVE));
    EXPECT_EQ(std::ranges::count(watch.keys(), std::to_string(KEY_5) + " 1"), 0);
    EXPECT_EQ(std::ranges::count(watch.keys(), std::to_string(BTN_LEFT) + " 1"), 0);
    EXPECT_TRUE(keyboardIsFree());
    EXPECT_EQ(devicesOpen(), 0) << "what is typed elsewhere is not even read";
  }

  static long devicesOpen() {
    const std::filesystem::directory_iterator files("/proc/" + std::to_string(service()) + "/fd");
    return std::count_if(begin(files), end(files), [](const auto& file) {
      return std::filesystem::read_symlink(file).string().starts_with("/dev/input/");
    });
  }

  void expectBack() {
    peer->forget();
    ASSERT_NO_FATAL_FAILURE(holdKeyboard());
    peer->post(KEY_5);
    EXPECT_TRUE(until(
        [this] { return std::ranges::count(watch.keys(), std::to_string(KEY_5) + " 0") == 1; }));
  }
};

TEST_F(ServiceSession, one_that_is_switched_away_has_nothing_until_it_is_back) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  EXPECT_GT(devicesOpen(), 0);
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  expectAway();
  peer->forget();
  ASSERT_TRUE(succeeds("busybox chvt 1"));
  expectBack();
}

TEST_F(ServiceSession, one_that_is_asked_to_lock_has_nothing_until_it_is_asked_to_unlock) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  ASSERT_TRUE(succeeds("loginctl lock-session " + login.id()));
  expectAway();
  peer->forget();
  ASSERT_TRUE(succeeds("loginctl unlock-session " + login.id()));
  expectBack();
}

TEST_F(ServiceSession, one_whose_desktop_says_that_it_is_locked_has_nothing) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const auto hint = [this](const char* value) {
    return succeeds(
        "busctl call org.freedesktop.login1 $(busctl call org.freedesktop.login1 "
        "/org/freedesktop/login1 org.freedesktop.login1.Manager GetSession s " +
        login.id() + " | cut -d '\"' -f 2) org.freedesktop.login1.Session SetLockedHint b " +
        value);
  };
  ASSERT_TRUE(hint("true"));
  expectAway();
  ASSERT_TRUE(succeeds("loginctl unlock-session " + login.id()));
  EXPECT_TRUE(keyboardIsFree()) << "that is a wish; the hint says what is";
  peer->forget();
  ASSERT_TRUE(hint("false"));
  expectBack();
}

TEST_F(ServiceSession, sleep_frees_the_keyboards_and_its_end_takes_them_again) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  ASSERT_TRUE(
      succeeds("busctl call org.freedesktop.login1 /org/freedesktop/login1 "
               "org.freedesktop.login1.Manager Suspend b false"));
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  expectBack();
}

TEST_F(ServiceSession, another_user_s_is_served_when_it_is_in_front_and_then_alone) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const Login other(visitor, 2);
  allow(visitor);
  const Caller theirs(other);
  EXPECT_THAT(theirs.call("Connect").error, testing::HasSubstr("session in front"));
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  Caller::Answer answer;
  EXPECT_TRUE(until([&] { return (answer = theirs.call("Connect")).socket.isOpen(); }))
      << answer.error;
  EXPECT_TRUE(hasEnded(EndReason::replaced));
  peer.emplace(std::move(answer.socket));
  ASSERT_NO_FATAL_FAILURE(holdKeyboard());
  EXPECT_THAT(caller->call("Connect").error, testing::HasSubstr("session in front"));
  ASSERT_TRUE(succeeds("busybox chvt 1"));
  expectAway();
}

TEST_F(ServiceSession, one_that_ends_takes_the_permission_with_it) {
  const Login other(visitor, 2);
  allow(visitor);
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  {
    const Caller theirs(other);
    Caller::Answer answer;
    ASSERT_TRUE(until([&] { return (answer = theirs.call("Connect")).socket.isOpen(); }));
    peer.emplace(std::move(answer.socket));
    ASSERT_NO_FATAL_FAILURE(holdKeyboard());
    ASSERT_TRUE(succeeds("loginctl terminate-session " + other.id()));
    EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  }
  ASSERT_TRUE(succeeds("busybox chvt 1"));
}

}  // namespace
}  // namespace vorrin::machine
