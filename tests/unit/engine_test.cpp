#include "engine/engine.h"

#include <gtest/gtest.h>

#include <type_traits>
#include <vector>

#include "support/engine_test.h"
#include "support/required.h"

namespace vorrin {
namespace {

static_assert(!std::is_copy_constructible_v<Engine> && !std::is_copy_assignable_v<Engine>);
static_assert(!std::is_polymorphic_v<Engine>);

using test::EngineTest;
using test::required;

PerMacro<bool> both(bool value) {
  return {value, value};
}

TEST(FreshEngine, has_its_start_values) {
  const Engine fresh;
  EXPECT_EQ(fresh.running, both(false));
  EXPECT_EQ(fresh.enabled, both(true));
  EXPECT_EQ(fresh.intervals, (PerMacro<double>{0.05, 0.001}));
  EXPECT_EQ(fresh.keys, (PerMacro<std::uint16_t>{50, 48}));
  EXPECT_EQ(fresh.digit, 1);
  EXPECT_FALSE(fresh.timers[0] || fresh.timers[1]);
  EXPECT_TRUE(fresh.held.empty());
  EXPECT_FALSE(fresh.tap);
  EXPECT_FALSE(fresh.changed);
}

TEST(FreshEngine, starts_and_acts_without_any_closure_installed) {
  fake::resetTime();
  Engine fresh;
  fresh.toggle(0);
  fake::advance(0.1);
  EXPECT_TRUE(fresh.running[0]);
  fresh.stop(0);
  EXPECT_FALSE(fresh.running[0]);
}

TEST_F(EngineTest, a_start_sets_the_macro_running_and_then_calls_changed_once) {
  PerMacro<bool> seen;
  macros.changed = [&] {
    ++changes;
    seen = macros.running;
  };
  macros.toggle(0);
  EXPECT_EQ(seen, (PerMacro<bool>{true, false}));
  EXPECT_TRUE(required(macros.timers[0]).isValid());
  EXPECT_EQ(changes, 1);
}

TEST_F(EngineTest, the_first_action_comes_one_interval_after_the_start) {
  macros.toggle(0);
  fake::advance(0.049999999);
  EXPECT_EQ(actions[0], 0);
  fake::advance(0.000000001);
  EXPECT_EQ(actions[0], 1);
}

TEST_F(EngineTest, both_macros_run_by_their_own_intervals) {
  macros.toggle(0);
  macros.toggle(1);
  fake::advance(0.26);
  EXPECT_EQ(actions, (PerMacro<int>{5, 260}));
}

TEST_F(EngineTest, a_disabled_macro_does_not_start_and_nobody_is_asked) {
  macros.enabled[1] = false;
  macros.toggle(1);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_EQ(changes, 0);
  EXPECT_EQ(questions, 0);
}

TEST_F(EngineTest, a_macro_without_permission_does_not_start) {
  permission = false;
  macros.toggle(0);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_FALSE(macros.timers[0]);
  EXPECT_EQ(changes, 0);
}

TEST_F(EngineTest, toggling_a_running_macro_stops_it) {
  macros.toggle(0);
  const Timer timer = required(macros.timers[0]);
  macros.toggle(0);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_FALSE(macros.timers[0]);
  EXPECT_FALSE(timer.isValid());
  EXPECT_EQ(changes, 2);
}

TEST_F(EngineTest, a_running_macro_can_be_stopped_when_disabled_and_without_permission) {
  macros.toggle(1);
  macros.enabled[1] = false;
  permission = false;
  macros.toggle(1);
  EXPECT_FALSE(macros.running[1]);
  EXPECT_EQ(questions, 1);
}

TEST_F(EngineTest, stopping_a_stopped_macro_only_calls_changed) {
  macros.stop(1);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_EQ(changes, 1);
}

TEST_F(EngineTest, stopping_one_macro_leaves_the_other_running) {
  macros.toggle(0);
  macros.toggle(1);
  macros.stop(0);
  fake::advance(0.1);
  EXPECT_EQ(macros.running, (PerMacro<bool>{false, true}));
  EXPECT_EQ(actions, (PerMacro<int>{0, 100}));
}

TEST_F(EngineTest, stop_all_stops_macro_0_then_macro_1_and_calls_changed_for_each) {
  std::vector<PerMacro<bool>> seen;
  macros.toggle(0);
  macros.toggle(1);
  macros.changed = [&] { seen.push_back(macros.running); };
  macros.stopAll();
  EXPECT_EQ(seen, (std::vector<PerMacro<bool>>{{false, true}, {false, false}}));
  EXPECT_FALSE(macros.timers[0] || macros.timers[1]);
  macros.stopAll();
  EXPECT_EQ(seen.size(), 4U);
}

using EngineDeathTest = EngineTest;

TEST_F(EngineDeathTest, a_macro_index_other_than_0_and_1_ends_the_process) {
  EXPECT_DEATH(macros.toggle(2), "Fatal error: Index out of range");
  EXPECT_DEATH(macros.toggle(-1), "Fatal error: Index out of range");
  EXPECT_DEATH(macros.stop(2), "Fatal error: Index out of range");
}

}  // namespace
}  // namespace vorrin
