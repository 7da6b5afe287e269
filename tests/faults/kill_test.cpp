#include <algorithm>
#include <array>
#include <csignal>

#include "fault_test.h"
#include "panel.h"
#include "platform/user_defaults.h"

namespace vorrin::faults {
namespace {

constexpr std::array endingSignals{SIGKILL, SIGTERM, SIGHUP, SIGINT};

struct KillTest : FaultTest {
  int signalOf(std::int64_t round) { return endingSignals[static_cast<std::size_t>(round) % 4]; }

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

  [[nodiscard]] Stored change(Stored stored, double interval) const {
    stored.settings.intervals[0] = interval;
    return stored;
  }
};

TEST_F(KillTest, ended_at_any_moment_of_its_macros_it_leaves_no_key_down_and_all_that_was_stored) {
  settings.intervals = {0.001, 0.001};
  start();
  const std::int64_t rounds = (amount("ROUNDS", 60) + 1) / 2;
  const Stored before = readStored();
  for (std::int64_t round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    if (round > 0) {
      startProgram();
      showClient();
    }
    user.tap(keys::backtick);
    user.tap(keys::tab);
    passMoment(std::chrono::milliseconds(60));
    end(signalOf(round));
    expectUsableInput();
    EXPECT_EQ(readStored(), before);
    expectNoLeftovers();
  }
  expectWorkingProgram();
}

TEST_F(KillTest, ended_at_any_moment_of_saving_it_has_stored_every_edit_wholly_or_not_at_all) {
  start();
  const std::int64_t rounds = amount("ROUNDS", 60) / 2;
  Stored before = readStored();
  for (std::int64_t round = 0; round < rounds && !HasFailure(); ++round) {
    SCOPED_TRACE("round " + std::to_string(round));
    if (round > 0) startProgram();
    showVorrin();
    const std::string name = "preset " + std::to_string(round % 3);
    Panel panel(user);
    panel.setHasPresets(!before.presets.empty());
    panel.enter(Control::keyboardInterval, "0.125");
    panel.enter(Control::presetName, name);
    panel.push(Control::savePreset);
    passMoment(std::chrono::milliseconds(250));
    end(signalOf(round));
    expectUsableInput();

    // Each of these texts was the field's for a while.
    const Stored after = readStored();
    std::vector<Stored> possible{before};
    for (const double interval : {0.1, 0.12, 0.125}) possible.push_back(change(before, interval));
    if (!before.presets.contains(name)) {
      possible.push_back(possible.back());
      possible.back().presets[name] = possible.back().settings;
    }
    EXPECT_NE(std::ranges::find(possible, after), possible.end())
        << after << " is nothing that can come of " << before;
    expectNoLeftovers();
    // For the next round to have something to change.
    PresetStore presets(UserDefaults::standard());
    if (round % 3 == 2) {
      for (const auto& [stored, preset] : presets.all().value) ASSERT_TRUE(presets.remove(stored));
    }
    before = readStored();
  }
  expectWorkingProgram();
}

}  // namespace
}  // namespace vorrin::faults
