#include <gtest/gtest.h>

#include <memory>

#include "support/engine_test.h"

namespace vorrin {
namespace {

using test::EngineTest;

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

TEST_F(EngineTest, a_running_macro_goes_on_when_it_is_disabled_and_permission_is_not_asked_again) {
  macros.toggle(0);
  macros.enabled[0] = false;
  permission = false;
  fake::advance(1);
  EXPECT_EQ(actions[0], 20);
  EXPECT_EQ(questions, 1);
  EXPECT_EQ(changes, 1);
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

TEST_F(EngineTest, an_action_may_restart_its_own_macro) {
  macros.emit = [this](int macro) {
    ++actions[macro];
    macros.toggle(macro);
    macros.toggle(macro);
  };
  macros.toggle(0);
  fake::advance(0.25);
  EXPECT_EQ(actions[0], 5);
  EXPECT_EQ(fake::scheduledTimers(), 1U);
}

TEST_F(EngineTest, changed_may_stop_the_macro_that_just_started) {
  macros.changed = [this] {
    if (macros.running[0]) macros.stop(0);
  };
  macros.toggle(0);
  fake::advance(1);
  EXPECT_FALSE(macros.running[0]);
  EXPECT_EQ(actions[0], 0);
  EXPECT_EQ(fake::scheduledTimers(), 0U);
}

TEST_F(EngineTest, a_timer_that_outlives_its_engine_does_nothing) {
  int count = 0;
  auto mortal = std::make_unique<Engine>();
  mortal->emit = [&count](int) { ++count; };
  mortal->toggle(1);
  fake::advance(0.005);
  mortal.reset();
  EXPECT_EQ(fake::scheduledTimers(), 1U);
  fake::advance(1);
  EXPECT_EQ(count, 5);
}

}  // namespace
}  // namespace vorrin
