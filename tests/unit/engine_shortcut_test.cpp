#include <gtest/gtest.h>

#include <sstream>
#include <vector>

#include "engine/engine.h"
#include "platform/fake/time/fake_time.h"
#include "support/keys.h"
#include "support/random.h"

namespace vorrin {
namespace {

constexpr std::uint16_t noShortcut = 0;

class ShortcutTest : public testing::Test {
 protected:
  ShortcutTest() { fake::resetTime(); }
  ~ShortcutTest() override { fake::resetTime(); }

  bool press(std::uint16_t key) { return macros.handle(key, true, false, false); }
  bool repeat(std::uint16_t key) { return macros.handle(key, true, true, false); }
  bool pressModified(std::uint16_t key) { return macros.handle(key, true, false, true); }
  bool release(std::uint16_t key) { return macros.handle(key, false, false, false); }

  Engine macros;
};

TEST_F(ShortcutTest, a_press_starts_its_macro_and_the_next_one_stops_it) {
  EXPECT_TRUE(press(backtick));
  EXPECT_TRUE(macros.running[0]);
  EXPECT_TRUE(release(backtick));
  EXPECT_TRUE(macros.running[0]);
  EXPECT_TRUE(press(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_TRUE(release(backtick));
}

TEST_F(ShortcutTest, each_key_toggles_its_own_macro) {
  press(tab);
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, true}));
  press(backtick);
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, true}));
}

TEST_F(ShortcutTest, a_held_key_is_known_by_the_time_its_macro_is_toggled) {
  bool known = false;
  macros.permitted = [&] { return known = macros.held.contains(backtick); };
  press(backtick);
  EXPECT_TRUE(known);
}

TEST_F(ShortcutTest, autorepeat_is_swallowed_without_toggling) {
  press(backtick);
  EXPECT_TRUE(repeat(backtick));
  EXPECT_TRUE(repeat(backtick));
  EXPECT_TRUE(macros.running[0]);
}

TEST_F(ShortcutTest, autorepeat_of_a_key_not_held_is_swallowed_without_toggling) {
  EXPECT_TRUE(repeat(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_TRUE(macros.held.empty());
  EXPECT_FALSE(release(backtick));
}

TEST_F(ShortcutTest, a_second_press_without_a_release_is_swallowed_without_toggling) {
  press(backtick);
  EXPECT_TRUE(press(backtick));
  EXPECT_TRUE(macros.running[0]);
}

TEST_F(ShortcutTest, a_release_of_a_key_never_pressed_passes) {
  EXPECT_FALSE(release(tab));
}

TEST_F(ShortcutTest, a_second_release_passes) {
  press(tab);
  EXPECT_TRUE(release(tab));
  EXPECT_FALSE(release(tab));
}

TEST_F(ShortcutTest, escape_stops_every_running_macro_and_passes) {
  press(backtick);
  press(tab);
  EXPECT_FALSE(press(escapeKey));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, false}));
  EXPECT_FALSE(release(escapeKey));
}

TEST_F(ShortcutTest, escape_stops_also_when_modified_or_repeated) {
  press(backtick);
  EXPECT_FALSE(macros.handle(escapeKey, true, true, true));
  EXPECT_FALSE(macros.running[0]);
}

TEST_F(ShortcutTest, escape_stops_also_when_it_is_a_shortcut) {
  press(tab);
  macros.keys = {escapeKey, tab};
  EXPECT_FALSE(press(escapeKey));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, false}));
  EXPECT_FALSE(macros.held.contains(escapeKey));
}

TEST_F(ShortcutTest, escape_leaves_held_keys_held) {
  press(tab);
  press(escapeKey);
  EXPECT_TRUE(release(tab));
}

TEST_F(ShortcutTest, a_modified_shortcut_passes_and_is_not_held) {
  EXPECT_FALSE(pressModified(backtick));
  EXPECT_FALSE(macros.running[0]);
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, a_modified_press_of_a_held_key_passes_and_leaves_it_held) {
  press(backtick);
  EXPECT_FALSE(pressModified(backtick));
  EXPECT_TRUE(macros.running[0]);
  EXPECT_TRUE(macros.held.contains(backtick));
}

TEST_F(ShortcutTest, the_shortcut_of_a_disabled_macro_passes) {
  macros.enabled[1] = false;
  EXPECT_FALSE(press(tab));
  EXPECT_FALSE(macros.running[1]);
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, the_shortcut_of_a_macro_disabled_while_running_passes) {
  press(tab);
  release(tab);
  macros.enabled[1] = false;
  EXPECT_FALSE(press(tab));
  EXPECT_TRUE(macros.running[1]);
}

TEST_F(ShortcutTest, a_key_that_is_no_shortcut_passes) {
  EXPECT_FALSE(press(noShortcut));
  EXPECT_FALSE(repeat(noShortcut));
  EXPECT_TRUE(macros.held.empty());
}

TEST_F(ShortcutTest, a_key_of_both_macros_toggles_macro_0_only) {
  macros.keys = {tab, tab};
  EXPECT_TRUE(press(tab));
  EXPECT_EQ(macros.running, (PerMacro<bool>{true, false}));
}

TEST_F(ShortcutTest, a_key_of_both_macros_passes_when_macro_0_is_disabled) {
  macros.keys = {tab, tab};
  macros.enabled = {false, true};
  EXPECT_FALSE(press(tab));
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, false}));
}

TEST_F(ShortcutTest, a_press_is_swallowed_and_held_when_the_start_is_not_permitted) {
  macros.permitted = [] { return false; };
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

TEST_F(ShortcutTest, after_a_lost_release_one_press_is_swallowed_without_toggling) {
  press(backtick);
  EXPECT_TRUE(press(backtick));
  EXPECT_TRUE(macros.running[0]);
  release(backtick);
  EXPECT_TRUE(press(backtick));
  EXPECT_FALSE(macros.running[0]);
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

std::string describe(std::uint16_t key, bool down, bool repeated, bool modified) {
  std::ostringstream text;
  text << "key " << key << (down ? " down" : " up") << (repeated ? " repeated" : "")
       << (modified ? " modified" : "");
  return text.str();
}

/// Bits of a number as independent conditions.
class Conditions {
 public:
  explicit Conditions(unsigned bits) : bits_(bits) {}
  bool next() { return (std::exchange(bits_, bits_ >> 1) & 1) != 0; }

 private:
  unsigned bits_;
};

TEST_F(ShortcutTest, every_combination_of_conditions_is_decided_by_the_tables) {
  for (const std::uint16_t key : {backtick, tab, escapeKey, noShortcut}) {
    for (unsigned bits = 0; bits < 1U << 10; ++bits) {
      Conditions conditions(bits);
      const bool down = conditions.next();
      const bool repeated = conditions.next();
      const bool modified = conditions.next();
      Model model;
      model.enabled = {conditions.next(), conditions.next()};
      model.permission = conditions.next();
      if (conditions.next()) model.held.insert(key);
      if (conditions.next()) model.keys = {tab, tab};

      Engine real;
      for (const int macro : {0, 1}) {
        model.running[macro] = conditions.next();
        if (model.running[macro]) real.toggle(macro);
      }
      real.enabled = model.enabled;
      real.keys = model.keys;
      real.held = model.held;
      real.permitted = [&model] { return model.permission; };

      ASSERT_EQ(real.handle(key, down, repeated, modified),
                model.handle(key, down, repeated, modified))
          << describe(key, down, repeated, modified) << ", conditions " << bits;
      ASSERT_EQ(real.running, model.running) << "conditions " << bits;
      ASSERT_EQ(real.held, model.held) << "conditions " << bits;
      real.stopAll();
    }
  }
}

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
        << describe(key, down, repeated, modified) << ", step " << step;
    ASSERT_EQ(macros.running, model.running) << "step " << step;
    ASSERT_EQ(macros.held, model.held) << "step " << step;
    ASSERT_EQ(macros.timers[0].has_value(), model.running[0]) << "step " << step;
    ASSERT_EQ(macros.timers[1].has_value(), model.running[1]) << "step " << step;
  }
}

}  // namespace
}  // namespace vorrin
