// The permission to use the keyboards: given and taken back by polkit's rules, and while the
// session is switched away, locked or asleep.

#include <chrono>
#include <cstdio>
#include <filesystem>

#include "permission_fixture.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using x11_tests::waitUntil;

/// What takes a second at most may take this long in the test machine, where polkit alone needs
/// half of that to read its rules anew and judge by them.
constexpr auto slowSecond = 3s;

TEST_F(Permission, without_a_grant_nothing_starts_and_asking_is_refused) {
  startTapProgram();
  x11_tests::waitFor(3s);
  EXPECT_FALSE(command("trusted"));
  EXPECT_FALSE(command("create 48"));
  EXPECT_FALSE(succeeds("pgrep -f [v]orrin-input-helper >/dev/null"));
}

TEST_F(Permission, a_grant_is_noticed_while_the_program_runs) {
  startTapProgram();
  EXPECT_FALSE(command("trusted"));
  changePermission("allow");
  EXPECT_TRUE(untilTrusted(true));
}

TEST_F(Permission, a_grant_opens_no_device_to_the_user) {
  startTrusted();
  EXPECT_FALSE(
      succeeds("setpriv --reuid=4242 --regid=4242 --init-groups "
               "sh -c 'for d in /dev/input/event* /dev/uinput; do test -r $d && exit 0; "
               "done; exit 1'"));
}

TEST_F(Permission, the_part_that_reads_the_keyboards_runs_as_the_user_without_rights) {
  startTrusted();
  EXPECT_TRUE(succeeds("test \"$(pgrep -c -u player -f [v]orrin-input-helper)\" = 1"));
  EXPECT_TRUE(succeeds(
      "grep -q '^CapEff:\\s*0*$' /proc/$(pgrep -u player -f [v]orrin-input-helper)/status"));
  EXPECT_TRUE(succeeds(
      "grep -q '^NoNewPrivs:\\s*1' /proc/$(pgrep -u player -f [v]orrin-input-helper)/status"));
}

class PermissionTakenBack : public Permission {
 protected:
  /// How long the keyboard stays in the program's hands once the rule is another.
  void expectLetGoAfter(const std::string& term) {
    startTrusted();
    changePermission(term);
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }, slowSecond));
    const std::chrono::duration<double, std::milli> taken =
        std::chrono::steady_clock::now() - begin;
    std::printf("%s: let go after %.0f ms\n", term.c_str(), taken.count());
  }
};

TEST_F(PermissionTakenBack, by_removing_the_rule_is_let_go_at_once) {
  expectLetGoAfter("ask");
  EXPECT_TRUE(untilTrusted(false));
}

TEST_F(PermissionTakenBack, by_a_refusing_rule_is_let_go_at_once) {
  expectLetGoAfter("deny");
}

TEST_F(Permission, a_killed_helper_is_started_again_without_asking) {
  startTrusted();
  ASSERT_TRUE(succeeds("pkill -KILL -u player -f [v]orrin-input-helper"));
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }));
  EXPECT_TRUE(untilTrusted(true));
}

TEST_F(Permission, a_session_switched_away_has_the_keyboards_free_until_it_is_back) {
  startTrusted();
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }));
  EXPECT_TRUE(command("enable"));
  x11_tests::waitFor(2s);
  EXPECT_TRUE(keyboardIsFree());
  ASSERT_TRUE(succeeds("busybox chvt 1"));
  EXPECT_TRUE(waitUntil([this] { return !keyboardIsFree(); }));
}

TEST_F(Permission, a_locked_session_has_the_keyboards_free_until_it_is_unlocked) {
  startTrusted();
  const std::string session =
      "$(loginctl list-sessions --no-legend | awk '$3 == \"player\" && $4 == \"seat0\" { print $1; "
      "exit }')";
  ASSERT_TRUE(succeeds("loginctl lock-session " + session));
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }));
  EXPECT_TRUE(command("enable"));
  ASSERT_TRUE(succeeds("loginctl unlock-session " + session));
  EXPECT_TRUE(waitUntil([this] { return !keyboardIsFree(); }));
}

TEST_F(Permission, a_refusal_is_asked_about_again_at_the_user_s_wish_only) {
  startTapProgram();
  ASSERT_TRUE(waitUntil([this] { return refusals() == 1; }, 60s));
  // As the permission watch does.
  for (int second = 0; second < 4; ++second) {
    EXPECT_FALSE(command("trusted"));
    x11_tests::waitFor(1s);
  }
  EXPECT_EQ(refusals(), 1);
  EXPECT_FALSE(command("ask"));
  EXPECT_TRUE(waitUntil([this] { return refusals() == 2; }, 60s));
}

TEST_F(Permission, sleep_frees_the_keyboards_and_its_end_takes_them_again) {
  startTrusted();
  ASSERT_TRUE(
      succeeds("busctl call org.freedesktop.login1 /org/freedesktop/login1 "
               "org.freedesktop.login1.Manager Suspend b false"));
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }));
  EXPECT_TRUE(command("enable"));
  EXPECT_TRUE(waitUntil([this] { return !keyboardIsFree(); }));
}

TEST_F(VorrinWindow, the_window_and_the_status_file_follow_a_grant_and_its_end) {
  startVorrin();
  changePermission("allow");
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_TRUE(waitUntil([] { return status() == readyStatus; })) << status();
  changePermission("ask");
  EXPECT_TRUE(readUpTo(permissionText));
  EXPECT_TRUE(waitUntil([] { return status() == refusedStatus; })) << status();
}

TEST_F(VorrinWindow, without_a_helper_a_grant_changes_nothing) {
  const std::filesystem::path installed = HELPER_PATH;
  std::filesystem::rename(installed, HELPER_PATH ".away");
  startVorrin();
  changePermission("allow");
  EXPECT_FALSE(waitUntil([] { return status() != refusedStatus; }, 5s)) << status();
  std::filesystem::rename(HELPER_PATH ".away", installed);
}

}  // namespace
}  // namespace vorrin::machine
