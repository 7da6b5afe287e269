#include <array>
#include <csignal>

#include "fault_test.h"

namespace vorrin::faults {
namespace {

constexpr std::array endingSignals{SIGKILL, SIGTERM, SIGHUP, SIGINT};

struct KillTest : FaultTest {
  /// Ends the program by a signal, now and then by the same one twice.
  void end(int signal) {
    const bool twice = random() % 4 == 0;
    program->process().signal(signal);
    if (twice) {
      passMoment(std::chrono::milliseconds(3));
      program->process().signal(signal);
    }
    const std::optional<Ending> ending = program->process().waitForEnd();
    ASSERT_TRUE(ending) << "it goes on after signal " << signal;
    const bool isExpected = signal == SIGKILL || twice
                                ? *ending == Ending{true, signal} || *ending == Ending{}
                                : *ending == Ending{};
    EXPECT_TRUE(isExpected) << (ending->bySignal ? "signal " : "status ") << ending->number;
    ASSERT_TRUE(waitUntil([&] { return !windows.titled("Vorrin"); }));
  }
};

TEST_F(KillTest, ended_at_any_moment_of_its_macros_it_leaves_no_key_down_and_all_that_was_stored) {
  settings.intervals = {0.001, 0.001};
  start();
  const std::int64_t rounds = (amount("ROUNDS", 40) + 1) / 2;
  const Preset before = stored();
  for (std::int64_t round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    if (round > 0) {
      startProgram();
      showClient();
    }
    for (const std::uint16_t key : settings.keys) user.tap(key);
    passMoment(std::chrono::milliseconds(60));
    end(endingSignals[static_cast<std::size_t>(round) % 4]);
    expectUsableInput();
    EXPECT_EQ(stored(), before);
  }
  expectWorkingProgram();
}

}  // namespace
}  // namespace vorrin::faults
