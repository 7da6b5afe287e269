#include <csignal>
#include <deque>

#include "fault_test.h"

namespace vorrin::faults {
namespace {

// The program is stopped for a while, as by a debugger, a full memory or a closed lid.
using StopTest = FaultTest;

TEST_F(StopTest, the_keyboard_works_meanwhile_and_escape_stops_the_macros_afterwards) {
  start();
  startMacros();
  program->process().signal(SIGSTOP);
  expectUsableInput();
  waitFor(std::chrono::seconds(amount("STOP", 3)));
  user.tap(keys::escape);
  expectUsableInput();
  program->process().signal(SIGCONT);
  expectSilence();
  expectUsableInput();
}

using LoadFault = FaultTest;

TEST_F(LoadFault, on_a_busy_machine_no_key_is_lost_and_what_a_macro_presses_it_releases) {
  settings.intervals = {3600, 0.001};
  start();
  std::deque<Process> load;
  for (int count = 0; count < 6; ++count) {
    load.emplace_back(std::vector<std::string>{"sh", "-c", "while :; do :; done"});
  }
  user.tap(keys::tab);
  expectActions(mouseMacro);
  const std::string text = "the quick brown fox jumps over a lazy dog 0123456789";
  client->readAll(user);
  user.type(text);
  EXPECT_EQ(textOf(client->readAll(user)), text);
  user.tap(keys::escape);
  expectSilence();
  load.clear();
  expectUsableInput();
}

}  // namespace
}  // namespace vorrin::faults
