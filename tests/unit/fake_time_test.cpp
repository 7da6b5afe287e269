#include "platform/fake/time/fake_time.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <vector>

#include "platform/run_loop.h"
#include "platform/timer.h"

namespace vorrin {
namespace {

class FakeTimeTest : public testing::Test {
 protected:
  FakeTimeTest() { fake::resetTime(); }
  ~FakeTimeTest() override { fake::resetTime(); }

  Timer started(double interval, std::function<void()> block,
                RunLoopMode mode = RunLoopMode::common) {
    Timer timer(interval, std::move(block));
    RunLoop::main().add(timer, mode);
    return timer;
  }

  std::function<void()> note() {
    return [this] { firings.push_back(fake::now()); };
  }

  std::vector<double> firings;
};

using Moments = std::vector<double>;

TEST_F(FakeTimeTest, a_timer_fires_at_whole_multiples_of_its_interval) {
  started(0.25, note());
  fake::advance(1);
  EXPECT_EQ(firings, (Moments{0.25, 0.5, 0.75, 1}));
}

TEST_F(FakeTimeTest, a_timer_not_added_does_not_fire) {
  const Timer timer(0.1, note());
  fake::advance(1);
  EXPECT_TRUE(firings.empty());
  EXPECT_TRUE(timer.isValid());
}

TEST_F(FakeTimeTest, the_first_firing_counts_from_the_adding) {
  const Timer timer(0.5, note());
  fake::advance(1);
  RunLoop::main().add(timer, RunLoopMode::common);
  fake::advance(0.5);
  EXPECT_EQ(firings, (Moments{1.5}));
}

TEST_F(FakeTimeTest, adding_twice_changes_nothing) {
  const Timer timer = started(0.5, note());
  fake::advance(0.3);
  RunLoop::main().add(timer, RunLoopMode::standard);
  fake::advance(0.2);
  EXPECT_EQ(firings, (Moments{0.5}));
}

TEST_F(FakeTimeTest, adding_after_the_end_does_nothing) {
  const Timer timer(0.5, note());
  timer.invalidate();
  RunLoop::main().add(timer, RunLoopMode::common);
  fake::advance(1);
  EXPECT_TRUE(firings.empty());
  EXPECT_EQ(fake::scheduledTimers(), 0U);
}

TEST_F(FakeTimeTest, a_timer_that_is_late_fires_once_and_keeps_its_grid) {
  started(0.25, note());
  fake::stall(0.8);
  fake::advance(0.3);
  EXPECT_EQ(firings, (Moments{0.8, 1}));
}

TEST_F(FakeTimeTest, a_block_that_takes_long_delays_its_own_timer) {
  started(0.25, [this] {
    firings.push_back(fake::now());
    if (firings.size() == 1) fake::stall(0.6);
  });
  fake::advance(1.25);
  EXPECT_EQ(firings, (Moments{0.25, 1, 1.25}));
}

TEST_F(FakeTimeTest, timers_fire_in_the_order_they_are_due_and_then_added) {
  std::vector<char> order;
  started(0.2, [&] { order.push_back('b'); });
  started(0.1, [&] { order.push_back('a'); });
  started(0.2, [&] { order.push_back('c'); });
  fake::advance(0.2);
  EXPECT_EQ(order, (std::vector<char>{'a', 'b', 'a', 'c'}));
}

TEST_F(FakeTimeTest, no_firing_follows_the_end_even_if_it_was_due) {
  const Timer timer = started(0.1, note());
  fake::stall(0.5);
  timer.invalidate();
  timer.invalidate();
  fake::advance(1);
  EXPECT_TRUE(firings.empty());
  EXPECT_FALSE(timer.isValid());
}

TEST_F(FakeTimeTest, a_block_may_end_its_own_timer_and_lives_to_its_return) {
  const auto owned = std::make_shared<int>(7);
  std::optional<Timer> timer;
  int seen = 0;
  timer = started(0.1, [&timer, &seen, owned] {
    timer->invalidate();
    timer.reset();
    seen = *owned;
  });
  fake::advance(1);
  EXPECT_EQ(seen, 7);
  EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(FakeTimeTest, the_end_releases_the_block) {
  const auto owned = std::make_shared<int>();
  const Timer timer = started(0.1, [owned] {});
  timer.invalidate();
  EXPECT_EQ(owned.use_count(), 1);
}

TEST_F(FakeTimeTest, the_run_loop_keeps_a_timer_that_nobody_else_keeps) {
  started(0.5, note());
  fake::advance(0.5);
  EXPECT_EQ(firings.size(), 1U);
}

TEST_F(FakeTimeTest, timers_of_the_standard_mode_wait_while_a_menu_is_open) {
  started(0.25, note(), RunLoopMode::standard);
  fake::setTracking(true);
  fake::advance(1.1);
  EXPECT_TRUE(firings.empty());
  fake::setTracking(false);
  fake::advance(0.15);
  EXPECT_EQ(firings, (Moments{1.1, 1.25}));
}

TEST_F(FakeTimeTest, a_timer_does_not_fire_within_its_own_block) {
  started(0.25, [this] {
    firings.push_back(fake::now());
    fake::advance(0.5);
  });
  fake::advance(0.25);
  EXPECT_EQ(firings, (Moments{0.25}));
}

TEST_F(FakeTimeTest, running_the_loop_lets_time_pass) {
  started(0.25, note());
  RunLoop::main().runFor(0.5);
  EXPECT_EQ(firings, (Moments{0.25, 0.5}));
  EXPECT_EQ(fake::now(), 0.5);
}

using FakeTimeDeathTest = FakeTimeTest;

TEST_F(FakeTimeDeathTest, an_interval_that_is_not_above_0_ends_the_process) {
  EXPECT_DEATH(Timer(0, [] {}), "Precondition failed");
  EXPECT_DEATH(Timer(-1, [] {}), "Precondition failed");
}

}  // namespace
}  // namespace vorrin
