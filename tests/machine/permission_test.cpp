// The permission to use the keyboards, decided by the real polkit for an ordinary user in a session
// of the real login manager. Runs in the test machine, as root.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>
#include <linux/input.h>
#include <sys/ioctl.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <string>
#include <vector>

#include "event_watch.h"
#include "tests/x11/harness/process.h"
#include "tests/x11/harness/wait.h"
#include "uhid_keyboard.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using x11_tests::Process;
using x11_tests::waitUntil;

/// What takes a second at most takes this long in the test machine, polkit's reading of its rules
/// included.
constexpr auto slowSecond = 8s;

constexpr const char* statusFile = "/home/player/Library/Logs/Vorrin-status.txt";
constexpr const char* readyStatus = "accessibility=true eventTap=true ready=true\n";
constexpr const char* refusedStatus = "accessibility=false eventTap=false ready=false\n";

bool succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

/// What the program says on standard error.
constexpr const char* programLog = "/home/player/log";

/// How often polkit's no was reported.
long refusals() {
  std::ifstream file(programLog);
  long count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line == "vorrin: the permission was not given") ++count;
  }
  return count;
}

/// What the window's buttons have polkit do, after it asked the administrator.
void changePermission(const std::string& term) {
  ASSERT_TRUE(succeeds("PKEXEC_UID=4242 " PERMISSION_PATH " " + term));
}

/// `command` in a session of the ordinary user on the first console.
std::vector<std::string> inSession(const std::string& command) {
  std::vector<std::string> words = {"systemd-run", "--quiet",   "--pipe",
                                    "--wait",      "--collect", "--unit=player-session"};
  for (const char* property :
       {"User=player", "PAMName=login", "TTYPath=/dev/tty1", "KillMode=control-group",
        "Environment=XDG_SEAT=seat0 XDG_VTNR=1 XDG_SESSION_TYPE=tty VORRIN_INPUT=helper "
        "QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0"}) {
    words.insert(words.end(), {"-p", property});
  }
  words.insert(words.end(), {"sh", "-c", "exec " + command + " 2>" + programLog});
  return words;
}

class Permission : public testing::Test {
 protected:
  Permission() : keyboard_("Test keyboard") {
    waitUntil([this] {
      watch_.look();
      return watch_.has("test/Test keyboard");
    });
  }
  ~Permission() override {
    program_.reset();
    succeeds("systemctl stop player-session 2>/dev/null");
    changePermission("ask");
  }

  /// Starts a program that asks for the permission, as Vorrin does at launch.
  void startTapProgram() {
    program_.emplace(inSession(TAP_PROGRAM_PATH));
    EXPECT_FALSE(command("ask"));
  }

  /// Gives the program a command; whether it answers yes.
  bool command(const std::string& line) {
    program_->writeLine(line);
    const auto name = line.substr(0, line.find(' '));
    // Opening a session takes long in the test machine.
    while (const auto answer = program_->readLine(60s)) {
      if (*answer == name + " yes") return true;
      if (*answer == name + " no") return false;
    }
    ADD_FAILURE() << "no answer to " << line;
    return false;
  }

  bool untilTrusted(bool trusted, std::chrono::milliseconds bound = x11_tests::patience) {
    return waitUntil([&] { return command("trusted") == trusted; }, bound);
  }

  void startTrusted() {
    changePermission("allow");
    startTapProgram();
    ASSERT_TRUE(untilTrusted(true));
    ASSERT_TRUE(waitUntil([this] { return command("create 48"); }));
    ASSERT_TRUE(waitUntil([this] { return !keyboardIsFree(); }));
  }

  bool keyboardIsFree() {
    watch_.look();
    return watch_.isFree("test/Test keyboard", "Test keyboard");
  }

  static std::string status() {
    std::ifstream file(statusFile);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  UhidKeyboard keyboard_;
  EventWatch watch_;
  std::optional<Process> program_;
};

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

TEST_F(Permission, what_is_taken_back_is_let_go_at_once) {
  startTrusted();
  changePermission("ask");
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }, slowSecond));
  EXPECT_TRUE(untilTrusted(false));
}

TEST_F(Permission, a_refusal_ends_a_running_helper_too) {
  startTrusted();
  changePermission("deny");
  EXPECT_TRUE(waitUntil([this] { return keyboardIsFree(); }, slowSecond));
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
  ASSERT_TRUE(waitUntil([] { return refusals() == 1; }, 60s));
  // As the permission watch does.
  for (int second = 0; second < 4; ++second) {
    EXPECT_FALSE(command("trusted"));
    x11_tests::waitFor(1s);
  }
  EXPECT_EQ(refusals(), 1);
  EXPECT_FALSE(command("ask"));
  EXPECT_TRUE(waitUntil([] { return refusals() == 2; }, 60s));
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

constexpr const char* permissionText =
    "status Permission needed: enable Vorrin in Accessibility. Connection retries automatically.";
constexpr const char* connectedText =
    "status Connected · settings persist · starts OFF on every launch";

class WindowTexts : public Permission {
 protected:
  void startVorrin() {
    std::filesystem::remove(statusFile);
    program_.emplace(inSession(WINDOW_TEXTS_PATH));
    ASSERT_TRUE(readUpTo(permissionText));
    ASSERT_TRUE(waitUntil([] { return status() == refusedStatus; })) << status();
  }

  /// Reads on to the text that the window is to show.
  bool readUpTo(const std::string& text) {
    while (const auto line = program_->readLine(60s)) {
      if (*line == text) return true;
    }
    return false;
  }
};

TEST_F(WindowTexts, the_window_and_the_status_file_follow_a_grant_and_its_end) {
  startVorrin();
  changePermission("allow");
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_TRUE(waitUntil([] { return status() == readyStatus; })) << status();
  changePermission("ask");
  EXPECT_TRUE(readUpTo(permissionText));
  EXPECT_TRUE(waitUntil([] { return status() == refusedStatus; })) << status();
}

TEST_F(WindowTexts, without_a_helper_a_grant_changes_nothing) {
  const std::filesystem::path installed = HELPER_PATH;
  std::filesystem::rename(installed, HELPER_PATH ".away");
  startVorrin();
  changePermission("allow");
  EXPECT_FALSE(waitUntil([] { return status() != refusedStatus; }, 5s)) << status();
  std::filesystem::rename(HELPER_PATH ".away", installed);
}

}  // namespace
}  // namespace vorrin::machine
