#include <gtest/gtest.h>

#include <vector>

#include "support/engine_test.h"
#include "support/keys.h"
#include "support/random.h"

namespace vorrin {
namespace {

constexpr std::uint16_t noShortcut = 0;

class ShortcutTest : public test::EngineTest {
 protected:
  bool press(std::uint16_t key) { return macros.handle(key, true, false, false); }
  bool repeat(std::uint16_t key) { return macros.handle(key, true, true, false); }
  bool pressModified(std::uint16_t key) { return macros.handle(key, true, false, true); }
  bool release(std::uint16_t key) { return macros.handle(key, false, false, false); }
};

TEST_F(ShortcutTest, a_press_starts_its_own_macro_and_the_next_one_stops_it) {
  EXPECT_TRUE(press(backtick));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, false}));
  EXPECT_TRUE(release(backtick));
  EXPECT_TRUE(press(tab));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, true}));
  EXPECT_TRUE(press(backtick));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, true}));
}

TEST_F(ShortcutTest, only_the_first_press_before_a_release_toggles_and_all_are_swallowed) {
  press(backtick);
  EXPECT_TRUE(repeat(backtick));
  EXPECT_TRUE(press(backtick));
  EXPECT_TRUE(macros.running[0]);
  release(backtick);
  EXPECT_TRUE(press(backtick));
  EXPECT_FALSE(macros.running[0]);
}

TEST_F(ShortcutTest, autorepeat_of_a_key_not_held_is_swallowed_without_toggling) {
  EXPECT_TRUE(repeat(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_FALSE(release(backtick));
}

TEST_F(ShortcutTest, a_release_without_a_press_passes) {
  EXPECT_FALSE(release(tab));
  press(tab);
  EXPECT_TRUE(release(tab));
  EXPECT_FALSE(release(tab));
}

TEST_F(ShortcutTest, escape_stops_every_running_macro_passes_and_leaves_held_keys_held) {
  press(backtick);
  press(tab);
  EXPECT_FALSE(press(escapeKey));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, false}));
  EXPECT_FALSE(release(escapeKey));
  EXPECT_TRUE(release(tab));
}

TEST_F(ShortcutTest, escape_stops_also_when_modified_repeated_or_a_shortcut) {
  press(tab);
  macros.keys = {escapeKey, tab};
  EXPECT_FALSE(macros.handle(escapeKey, true, true, true));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, false}));
  EXPECT_FALSE(press(escapeKey));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_FALSE(release(escapeKey));
}

TEST_F(ShortcutTest, a_modified_shortcut_passes_toggles_nothing_and_leaves_held_keys_alone) {
  EXPECT_FALSE(pressModified(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_TRUE(macros.held.empty());
  press(backtick);
  EXPECT_FALSE(pressModified(backtick));
  EXPECT_TRUE(macros.running[0]);
  EXPECT_TRUE(release(backtick));
}

TEST_F(ShortcutTest, the_shortcut_of_a_disabled_macro_passes_and_toggles_nothing) {
  macros.enabled[1] = false;
  EXPECT_FALSE(press(tab));
  EXPECT_FALSE(macros.running[1]);
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, a_key_that_is_no_shortcut_passes) {
  EXPECT_FALSE(press(noShortcut));
  EXPECT_FALSE(repeat(noShortcut));
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, a_key_of_both_macros_is_macro_0s_only) {
  macros.keys = {tab, tab};
  EXPECT_TRUE(press(tab));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, false}));
  macros.enabled[0] = false;
  EXPECT_FALSE(press(tab));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, false}));
}

TEST_F(ShortcutTest, a_press_is_swallowed_and_held_also_when_the_start_is_not_permitted) {
  permission = false;
  EXPECT_TRUE(press(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_TRUE(macros.held.contains(backtick));
}

TEST_F(ShortcutTest, a_release_counts_whatever_has_changed_since_the_press) {
  press(backtick);
  macros.keys = {tab, 97};
  macros.enabled = {false, false};
  EXPECT_TRUE(macros.handle(backtick, false, true, true));
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, key_codes_at_both_ends_of_the_range_can_be_shortcuts) {
  macros.keys = {0, 65535};
  EXPECT_TRUE(press(0));
  EXPECT_TRUE(press(65535));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, true}));
}

/// What the tables of the shortcut decision say, kept apart from how the engine reaches it.
struct Model {
  PerMacro<bool> running{false, false};
  PerMacro<bool> enabled{true, true};
  PerMacro<std::uint16_t> keys{backtick, tab};
  bool permission = true;
  std::set<std::uint16_t> held;

  bool handle(std::uint16_t key, bool down, bool repeated, bool modified) {
    const bool wasHeld = held.contains(key);
    if (!down) {
      held.erase(key);
      return wasHeld;
    }
    if (key == escapeKey) {
      running = {false, false};
      return false;
    }
    const int owner = keys[0] == key ? 0 : keys[1] == key ? 1 : -1;
    if (modified || owner < 0 || !enabled[owner]) return false;
    if (repeated || wasHeld) return true;
    held.insert(key);
    running[owner] = !running[owner] && permission;
    return true;
  }
};

TEST_F(ShortcutTest, random_streams_of_events_are_decided_by_the_tables) {
  test::Random random;
  const std::vector<std::uint16_t> keys{backtick, tab, 97, 98, escapeKey, noShortcut};
  Model model;
  macros.permitted = [&model] { return model.permission; };
  for (int step = 0; step < 200'000; ++step) {
    if (random.chance(0.02)) model.permission = !model.permission;
    if (random.chance(0.02)) {
      const int macro = random.between(0, 1);
      model.enabled[macro] = macros.enabled[macro] = random.chance(0.5);
    }
    if (random.chance(0.02)) {
      const int macro = random.between(0, 1);
      model.keys[macro] = macros.keys[macro] = random.of(keys);
    }
    const std::uint16_t key = random.of(keys);
    const bool down = random.chance(0.6);
    const bool repeated = random.chance(0.2);
    const bool modified = random.chance(0.2);
    ASSERT_EQ(macros.handle(key, down, repeated, modified),
              model.handle(key, down, repeated, modified))
        << "step " << step << ", key " << key << (down ? " down" : " up")
        << (repeated ? " repeated" : "") << (modified ? " modified" : "");
    ASSERT_EQ(macros.running, model.running) << "step " << step;
    ASSERT_EQ(macros.held, model.held) << "step " << step;
  }
}

}  // namespace
}  // namespace vorrin
