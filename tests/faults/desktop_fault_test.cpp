#include <csignal>

#include "fault_test.h"
#include "input_watch.h"

namespace vorrin::faults {
namespace {

constexpr unsigned rightButton = 3;

// The desktop that the program runs on is hurt.
struct DesktopFault : FaultTest {
  /// How long the server is kept from working.
  static constexpr std::chrono::milliseconds stall{1500};

  /// Kills the program when the server has not read for a while what was posted.
  void killBehind(std::chrono::milliseconds lag) {
    desktop.server().process().signal(SIGSTOP);
    waitFor(lag);
    // With events that it has not read, its end is an error on the server's side, which then reads
    // no more of what it was sent.
    program->process().signal(SIGSTOP);
    desktop.server().process().signal(SIGCONT);
    passMoment(std::chrono::milliseconds(2));
    kill();
    passClicks();
  }

  /// The window manager lets clicks through one by one; the last of what was posted would land on
  /// the window of the next run, and bring it to the front.
  void passClicks() {
    user.click(rightButton);
    client->readUntil([](const ClientEvent& event) {
      return event.kind == "ButtonRelease" && event.detail == rightButton;
    });
  }
};

TEST_F(DesktopFault,
       without_a_window_manager_the_macros_go_on_and_under_a_new_one_all_is_as_before) {
  // Without the clicks, which would go to whatever window comes under the pointer meanwhile.
  settings.enabled[1] = false;
  start();
  user.tap(keys::backtick);
  expectActions(keyboardMacro);
  desktop.killWindowManager();
  client->readAll(user);
  expectActions(keyboardMacro);
  desktop.startWindowManager();
  ASSERT_TRUE(waitUntil([&] { return windows.titled("Vorrin").has_value(); }));
  showClient();
  expectActions(keyboardMacro);
  showVorrin();
  expectNothingPressed();
  showClient();
  expectActions(keyboardMacro);
  user.tap(keys::escape);
  expectSilence();
  expectUsableInput();
}

TEST_F(DesktopFault, the_death_of_its_server_ends_the_program_and_loses_nothing) {
  start();
  startMacros();
  const Preset before = stored();
  desktop.server().process().signal(SIGKILL);
  const std::optional<Ending> ending = program->process().waitForEnd();
  ASSERT_TRUE(ending);
  EXPECT_FALSE(ending->bySignal);
  EXPECT_EQ(stored(), before);
  Desktop other;
  const Program again(other.display(), home);
  EXPECT_TRUE(again.waitUntilReady());
}

TEST_F(DesktopFault, keys_that_another_client_makes_up_are_no_shortcuts) {
  start();
  OtherClient other(desktop.display());
  for (const unsigned long window : {client->window(), vorrinWindow()}) {
    for (const std::uint16_t key : settings.keys) other.makeUpKey(key, window);
  }
  client->readUntil(releaseOf(settings.keys[1]));
  expectNothingPressed();
}

TEST_F(DesktopFault, a_server_that_stood_still_is_not_flooded_with_what_was_missed) {
  settings.intervals = {0.001, 0.001};
  start();
  startMacros();
  InputWatch watch(desktop.display());
  OtherClient other(desktop.display());
  other.stopServer();
  waitFor(stall);
  user.queue(keys::escape, true, Source::keyboard);
  user.queue(keys::escape, false, Source::keyboard);
  other.resumeServer();
  user.flush();
  expectSilence();
  // What the program had handed over when the server stopped to listen, and a little of what it
  // did afterwards until Escape.
  EXPECT_LT(watch.takePresses(), 300);
  expectUsableInput();
}

TEST_F(DesktopFault,
       what_is_left_down_in_front_of_a_server_that_stood_still_goes_with_the_next_run) {
  settings.intervals = {0.001, 0.001};
  start();
  const std::int64_t rounds = (amount("ROUNDS", 40) + 11) / 12;
  const std::chrono::milliseconds lag{amount("LAG", 20)};
  for (std::int64_t round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    if (round > 0) {
      startProgram();
      showClient();
    }
    client->readAll(user);
    startMacros();
    killBehind(lag);
    expectWorkingProgram();
    expectUsableInput();
  }
}

}  // namespace
}  // namespace vorrin::faults
