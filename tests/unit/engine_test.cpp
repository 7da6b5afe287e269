#include "engine/engine.h"

#include <gtest/gtest.h>

#include "support/engine_test.h"

namespace vorrin {
namespace {

using test::EngineTest;

PerMacro<bool> both(bool value) {
  return {value, value};
}

TEST_F(EngineTest, a_start_sets_the_macro_running_and_then_calls_changed_once) {
  PerMacro<bool> seen;
  macros.changed = [&] {
    ++changes;
    seen = macros.running;
  };
  macros.toggle(0);
  EXPECT_EQ(seen, (PerMacro<bool>{true, false}));
  EXPECT_TRUE(macros.timers[0].value().isValid());
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

TEST_F(EngineTest, a_macro_disabled_does_not_start_unasked_and_one_without_permission_neither) {
  macros.enabled[1] = false;
  macros.toggle(1);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_EQ(questions, 0);
  permission = false;
  macros.toggle(0);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_FALSE(macros.timers[0]);
  EXPECT_EQ(changes, 0);
}

TEST_F(EngineTest, toggling_a_running_macro_stops_it) {
  macros.toggle(0);
  const Timer timer = macros.timers[0].value();
  macros.toggle(0);
  EXPECT_EQ(macros.running, both(false));
  EXPECT_FALSE(macros.timers[0]);
  EXPECT_FALSE(timer.isValid());
  EXPECT_EQ(changes, 2);
}

TEST_F(EngineTest, stop_all_stops_both_and_says_so) {
  macros.toggle(0);
  macros.toggle(1);
  const int before = changes;
  macros.stopAll();
  EXPECT_EQ(macros.running, both(false));
  EXPECT_FALSE(macros.timers[0] || macros.timers[1]);
  EXPECT_GT(changes, before);
}

TEST_F(EngineTest, no_action_follows_a_stop_even_one_already_due) {
  macros.toggle(1);
  fake::advance(0.01);
  fake::stall(0.2);
  macros.stop(1);
  fake::advance(10);
  EXPECT_EQ(actions[1], 10);
  EXPECT_EQ(fake::scheduledTimers(), 0U);
}

TEST_F(EngineTest, a_changed_interval_takes_effect_at_the_next_start) {
  macros.toggle(0);
  macros.intervals[0] = 0.2;
  fake::advance(0.149);
  EXPECT_EQ(actions[0], 2);
  macros.toggle(0);
  macros.toggle(0);
  fake::advance(0.199);
  EXPECT_EQ(actions[0], 2);
  fake::advance(0.001);
  EXPECT_EQ(actions[0], 3);
}

TEST_F(EngineTest,
       a_running_macro_goes_on_disabled_and_without_permission_unasked_and_can_be_stopped) {
  macros.toggle(0);
  macros.enabled[0] = false;
  permission = false;
  fake::advance(1);
  EXPECT_EQ(actions[0], 20);
  EXPECT_EQ(changes, 1);
  macros.toggle(0);
  EXPECT_FALSE(macros.running[0]);
  EXPECT_EQ(questions, 1);
}

TEST_F(EngineTest, macros_go_on_while_a_menu_is_open) {
  fake::setTracking(true);
  macros.toggle(0);
  fake::advance(0.1);
  EXPECT_EQ(actions[0], 2);
}

TEST_F(EngineTest, an_action_may_stop_the_other_macro_that_is_due_at_the_same_moment) {
  macros.intervals = {0.5, 0.5};
  macros.emit = [this](int macro) {
    ++actions[macro];
    macros.stopAll();
  };
  macros.toggle(0);
  macros.toggle(1);
  fake::advance(1);
  EXPECT_EQ(actions, (PerMacro<int>{1, 0}));
}

}  // namespace
}  // namespace vorrin
