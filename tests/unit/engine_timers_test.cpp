#include <gtest/gtest.h>

#include <memory>

#include "support/engine_test.h"

namespace vorrin {
namespace {

using test::EngineTest;

TEST_F(EngineTest, no_action_follows_a_stop) {
  macros.toggle(1);
  fake::advance(0.01);
  macros.stop(1);
  fake::advance(10);
  EXPECT_EQ(actions[1], 10);
  EXPECT_EQ(fake::scheduledTimers(), 0U);
}

TEST_F(EngineTest, an_action_already_due_does_not_follow_a_stop) {
  macros.toggle(0);
  fake::stall(0.2);
  macros.stop(0);
  fake::advance(1);
  EXPECT_EQ(actions[0], 0);
}

TEST_F(EngineTest, a_changed_interval_takes_effect_at_the_next_start) {
  macros.toggle(0);
  macros.intervals[0] = 0.2;
  fake::advance(0.1);
  EXPECT_EQ(actions[0], 2);
  macros.toggle(0);
  macros.toggle(0);
  fake::advance(0.4);
  EXPECT_EQ(actions[0], 4);
}

TEST_F(EngineTest, a_restarted_macro_waits_a_whole_interval_again) {
  macros.toggle(0);
  fake::advance(0.049);
  macros.toggle(0);
  macros.toggle(0);
  fake::advance(0.049);
  EXPECT_EQ(actions[0], 0);
  fake::advance(0.001);
  EXPECT_EQ(actions[0], 1);
}

TEST_F(EngineTest, macros_go_on_while_a_menu_is_open) {
  fake::setTracking(true);
  macros.toggle(0);
  fake::advance(0.1);
  EXPECT_EQ(actions[0], 2);
}

TEST_F(EngineTest, a_late_action_is_performed_once_and_keeps_its_grid) {
  macros.toggle(0);
  fake::stall(0.23);
  fake::advance(0);
  EXPECT_EQ(actions[0], 1);
  fake::advance(0.02);
  EXPECT_EQ(actions[0], 2);
}

TEST_F(EngineTest, actions_neither_ask_for_permission_nor_announce_a_change) {
  macros.toggle(0);
  permission = false;
  fake::advance(1);
  EXPECT_EQ(actions[0], 20);
  EXPECT_EQ(questions, 1);
  EXPECT_EQ(changes, 1);
}

TEST_F(EngineTest, a_macro_goes_on_when_it_is_disabled_while_running) {
  macros.toggle(0);
  macros.enabled[0] = false;
  fake::advance(0.1);
  EXPECT_EQ(actions[0], 2);
}

TEST_F(EngineTest, a_tick_of_a_macro_not_marked_running_does_nothing) {
  macros.toggle(0);
  macros.running[0] = false;
  fake::advance(1);
  EXPECT_EQ(actions[0], 0);
}

TEST_F(EngineTest, an_action_may_stop_its_own_macro) {
  macros.emit = [this](int macro) {
    ++actions[macro];
    macros.stop(macro);
  };
  macros.toggle(0);
  fake::advance(1);
  EXPECT_EQ(actions[0], 1);
  EXPECT_FALSE(macros.running[0]);
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

TEST_F(EngineTest, an_engine_releases_its_closures_when_it_ends) {
  const auto owned = std::make_shared<int>();
  auto mortal = std::make_unique<Engine>();
  mortal->changed = [owned] {};
  mortal->emit = [owned](int) {};
  mortal->permitted = [owned] { return true; };
  mortal->toggle(0);
  mortal.reset();
  EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(EngineTest, the_longest_interval_is_exact_for_a_day) {
  macros.intervals[0] = 3600;
  macros.toggle(0);
  fake::advance(3599.999999999);
  EXPECT_EQ(actions[0], 0);
  fake::advance(0.000000001);
  EXPECT_EQ(actions[0], 1);
  fake::advance(23 * 3600);
  EXPECT_EQ(actions[0], 24);
}

TEST_F(EngineTest, the_shortest_interval_is_exact_for_a_thousand_seconds) {
  macros.toggle(1);
  fake::advance(1000);
  EXPECT_EQ(actions[1], 1'000'000);
}

TEST_F(EngineTest, actions_do_not_drift_in_a_day) {
  macros.intervals[0] = 0.0875;
  macros.toggle(0);
  fake::advance(24 * 3600 - 0.000000001);
  EXPECT_EQ(actions[0], 987'428);
}

TEST_F(EngineTest, ten_thousand_starts_and_stops_leave_no_timer) {
  for (int count = 0; count < 10'000; ++count) {
    macros.toggle(count % 2);
    fake::advance(0.0005);
  }
  macros.stopAll();
  EXPECT_EQ(fake::scheduledTimers(), 0U);
}

}  // namespace
}  // namespace vorrin
