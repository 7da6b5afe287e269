#include <csignal>
#include <fstream>

#include "fault_test.h"
#include "input_watch.h"

namespace vorrin::faults {
namespace {

// The program is stopped for a while, as by a debugger, a full memory or a closed lid.
struct StopTest : FaultTest {
  void stopAWhile() {
    program->process().signal(SIGSTOP);
    waitFor(duration);
    program->process().signal(SIGCONT);
  }

  /// Stops the program where it waits for something to do. What it is at it would do afterwards.
  void stopBetweenActions() {
    ASSERT_TRUE(waitUntil([&] {
      const long sleepsIn = systemCall();
      program->process().signal(SIGSTOP);
      if (waitUntil([&] { return isStopped(); }) && sleepsIn >= 0 && systemCall() == sleepsIn) {
        return true;
      }
      program->process().signal(SIGCONT);
      return false;
    }));
  }

  /// The number of the system call that the program sleeps in or was stopped in; -1 where there is
  /// none.
  [[nodiscard]] long systemCall() const {
    long number = -1;
    return fileOf("syscall") >> number ? number : -1;
  }

  [[nodiscard]] bool isStopped() const {
    std::ifstream stat = fileOf("stat");
    std::string field;
    stat >> field >> field >> field;
    return field == "T";
  }

  [[nodiscard]] std::ifstream fileOf(const std::string& name) const {
    return std::ifstream("/proc/" + std::to_string(program->process().id()) + "/" + name);
  }

  const std::chrono::seconds duration{amount("STOP", 3)};
};

TEST_F(StopTest, the_keyboard_works_while_the_program_is_stopped) {
  startMacros();
  program->process().signal(SIGSTOP);
  expectUsableInput();
  waitFor(duration);
  user.tap(keys::tab);
  expectUsableInput();
  program->process().signal(SIGCONT);
}

TEST_F(StopTest, the_macros_go_on_afterwards_without_making_up_for_what_they_missed) {
  startMacros();
  stopAWhile();
  // Both act a hundred times a second.
  EXPECT_LT(pressesPerSecond(std::chrono::milliseconds(500)), 300);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  user.tap(keys::escape);
  expectSilence();
  expectUsableInput();
}

TEST_F(StopTest, escape_pressed_meanwhile_stops_the_macros_at_once_afterwards) {
  startMacros();
  stopBetweenActions();
  waitFor(duration);
  client->readAll(user);
  user.tap(keys::escape);
  InputWatch watch(desktop.display());
  program->process().signal(SIGCONT);
  waitFor(std::chrono::milliseconds(500));
  // One of each macro, which was due all the while.
  EXPECT_LE(watch.takePresses(), 2);
  expectUsableInput();
}

TEST_F(StopTest, asked_to_end_while_stopped_it_ends_as_usual_afterwards) {
  startMacros();
  program->process().signal(SIGSTOP);
  program->process().signal(SIGTERM);
  waitFor(std::chrono::milliseconds(200));
  program->process().signal(SIGCONT);
  EXPECT_EQ(program->process().waitForEnd(), Ending{});
  expectUsableInput();
}

}  // namespace
}  // namespace vorrin::faults
