#include <gtest/gtest.h>

#include <unistd.h>
#include <array>
#include <csignal>
#include <iostream>
#include <random>
#include <thread>

#include "fault_test.h"
#include "platform/user_defaults.h"
#include "settings/settings_persistence.h"
#include "tests/foundation/child_process.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin::faults {
namespace {

constexpr std::array endingSignals{SIGKILL, SIGTERM, SIGHUP, SIGINT};

/// Edits as a user makes them, one after the other for ever.
Preset settingsOf(std::int64_t step) {
  const auto number = static_cast<double>(step % 3000 + 1);
  const bool swapped = step % 2 == 0;
  return {{number / 1000, number},
          {keys::shortcuts[swapped ? 2 : 3], keys::shortcuts[swapped ? 3 : 2]},
          step % 10,
          {step % 3 != 0, step % 5 != 0}};
}

std::string nameOf(std::int64_t step) {
  return "Preset “" + std::to_string(step % 7) + "” ☕";
}

std::string newNameOf(std::int64_t step) {
  return "renamed " + std::to_string(step % 5);
}

/// What has become of `stored` after the edit number `step`.
Stored edited(Stored stored, std::int64_t step) {
  switch (step % 8) {
    case 0:
    case 4:
      stored.settings = settingsOf(step);
      break;
    case 3: {  // refused where the name is taken
      auto entry = stored.presets.extract(nameOf(step - 1));
      entry.key() = stored.presets.contains(newNameOf(step)) ? nameOf(step - 1) : newNameOf(step);
      stored.presets.insert(std::move(entry));
      break;
    }
    case 7:
      stored.presets.erase(nameOf(step - 1));
      break;
    default:
      stored.presets[nameOf(step)] = settingsOf(step);
      break;
  }
  return stored;
}

/// Makes the same edit by the program's own means; false when it was not made as expected.
bool edit(std::int64_t step) {
  const auto defaults = UserDefaults::standard();
  const PresetStore presets(defaults);
  switch (step % 8) {
    case 0:
    case 4:
      storeCurrentSettings(defaults, settingsOf(step));
      return true;
    case 3: {
      const bool isFree = !presets.all().contains(newNameOf(step));
      return presets.rename(nameOf(step - 1), newNameOf(step)) == isFree;
    }
    case 7:
      return presets.remove(nameOf(step - 1));
    default:
      return presets.save(settingsOf(step), nameOf(step));
  }
}

struct SavingKill : DefaultsSandbox {};

TEST_F(SavingKill, every_edit_is_stored_wholly_or_not_at_all_whenever_its_process_is_ended) {
  const std::int64_t kills = amount("saves", 480);
  std::mt19937 random(static_cast<std::mt19937::result_type>(amount("seed", 1)));
  std::int64_t next = 0;
  Stored before = readStored();
  std::int64_t between = 0;
  for (std::int64_t kill = 0; kill < kills; ++kill) {
    std::array<int, 2> progress{};
    ASSERT_EQ(::pipe(progress.data()), 0);
    ChildProcess child([&] {
      for (std::int64_t step = next;; ++step) {
        if (!edit(step)) return false;
        if (::write(progress[1], &step, sizeof step) != sizeof step) return false;
      }
    });
    ::close(progress[1]);
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 12'000));
    ::kill(child.id(), endingSignals[random() % endingSignals.size()]);
    child.wait();
    for (std::int64_t step = 0; ::read(progress[0], &step, sizeof step) == sizeof step;) {
      before = edited(before, step);
      next = step + 1;
    }
    ::close(progress[0]);
    const Stored after = readStored();
    const Stored possible = edited(before, next);
    ASSERT_TRUE(after == before || after == possible)
        << "kill " << kill << " left " << after << ", not " << before << " nor " << possible;
    if (after == possible && !(after == before)) {
      ++between;
      before = after;
      ++next;
    }
    ASSERT_EQ(child.errors(), "") << "kill " << kill;
  }
  // A journal that was left behind goes with the next edit.
  ASSERT_TRUE(edit(next));
  EXPECT_EQ(namesIn(settings).size(), 1U);
  std::cout << next << " edits, " << between << " of them stored but not told of\n";
  EXPECT_GT(between, 0) << "no kill met an edit";
}

}  // namespace
}  // namespace vorrin::faults
