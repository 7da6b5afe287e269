#include <csignal>

#include "end_to_end_test.h"

namespace vorrin::x11_tests {
namespace {

// Starts, ends, crashes, and others in the way.
using LifecycleTest = EndToEndTest;

TEST_F(LifecycleTest, every_start_is_with_both_macros_off) {
  start();
  startMacros();
  kill();
  startProgram();
  showClient();
  expectNothingPressed();
}

TEST_F(LifecycleTest, closing_the_window_or_a_termination_signal_ends_the_program_and_its_macros) {
  for (const bool byWindow : {true, false}) {
    start();
    startMacros();
    byWindow ? windows.close(vorrinWindow()) : program->process().signal(SIGTERM);
    EXPECT_EQ(program->process().waitForEnd(), Ending{});
    expectSilence();
  }
}

TEST_F(LifecycleTest,
       a_shortcut_taken_while_the_window_is_in_front_shows_at_once_until_it_is_free) {
  start();
  user.tap(keys::backtick);
  expectActions(keyboardMacro);
  showVorrin();
  auto other = std::make_unique<OtherClient>(desktop.display());
  ASSERT_TRUE(other->holdKey(keys::tab));
  EXPECT_TRUE(program->waitUntilUnavailable());
  other.reset();
  EXPECT_TRUE(program->waitUntilReady());
  showClient();
  expectSilence();
}

TEST_F(LifecycleTest, a_second_program_waits_for_the_keys_of_the_first) {
  start();
  const Home otherHome;
  const Program second(desktop.display(), otherHome);
  EXPECT_TRUE(second.waitUntilUnavailable());
  program.reset();
  EXPECT_TRUE(second.waitUntilReady());
}

}  // namespace
}  // namespace vorrin::x11_tests
