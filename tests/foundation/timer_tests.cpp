#include "platform/timer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <vector>

#include "platform/run_loop.h"

namespace vorrin {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// Holds the main thread up.
void stall(double seconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

void schedule(const Timer& timer) {
  RunLoop::main().add(timer, RunLoopMode::common);
}

/// Runs the main run loop until `done` gives true, for 10 seconds at most.
template <typename Condition>
bool runUntil(Condition done) {
  const auto start = Clock::now();
  while (!done() && secondsSince(start) < 10) RunLoop::main().runFor(0.001);
  return done();
}

TEST(Timer, fires_at_whole_multiples_of_its_interval_after_it_was_added_and_never_before) {
  constexpr double interval = 0.001234567;
  std::vector<double> firings;
  Clock::time_point added;
  const Timer timer(interval, [&] { firings.push_back(secondsSince(added)); });
  stall(0.02);
  added = Clock::now();
  schedule(timer);
  ASSERT_TRUE(runUntil([&] { return firings.size() >= 50; }));
  timer.invalidate();
  EXPECT_LT(firings.front(), 1.0);
  for (std::size_t i = 0; i < firings.size(); ++i) {
    EXPECT_GE(firings[i], static_cast<double>(i + 1) * interval);
  }
}

TEST(Timer, keeps_its_grid_after_a_stall) {
  constexpr double interval = 0.02;
  std::vector<double> firings;
  const auto added = Clock::now();
  const Timer timer(interval, [&] {
    firings.push_back(secondsSince(added));
    if (firings.size() % 2 == 0) stall(2.5 * interval);
  });
  schedule(timer);
  // A timer that counted its interval from the late firing would never come sooner than that.
  const auto cameSooner = [&] {
    for (std::size_t i = 1; i < firings.size(); ++i) {
      if (firings[i] - firings[i - 1] < 0.75 * interval) return true;
    }
    return false;
  };
  EXPECT_TRUE(runUntil(cameSooner));
  timer.invalidate();
}

TEST(Timer, makes_no_burst_after_the_main_thread_was_blocked) {
  int count = 0;
  const Timer timer(0.001, [&] { ++count; });
  schedule(timer);
  stall(0.2);
  const auto served = Clock::now();
  RunLoop::main().runFor(0.01);
  const double elapsed = secondsSince(served);
  timer.invalidate();
  EXPECT_GE(count, 1);
  EXPECT_LE(count, 2 + static_cast<int>(elapsed / 0.001));
}

TEST(Timer, does_not_fire_unless_added_valid_and_due) {
  int count = 0;
  const auto block = [&] { ++count; };
  const Timer notAdded(0.001, block);
  const Timer late(3600, block);
  const Timer invalidated(0.001, block);
  const std::vector<Timer> copies(2, Timer(0.001, block));
  for (const auto& timer : {late, copies.front()}) schedule(timer);
  copies.back().invalidate();
  invalidated.invalidate();
  schedule(invalidated);
  RunLoop::main().runFor(0.02);
  late.invalidate();
  EXPECT_EQ(count, 0);
  EXPECT_TRUE(notAdded.isValid());
  EXPECT_FALSE(late.isValid() || invalidated.isValid() || copies.front().isValid());
}

TEST(Timer, does_not_fire_once_invalidated_even_by_its_own_block_or_when_it_was_due_already) {
  int count = 0;
  std::vector<Timer> timers;
  const auto block = [&] {
    ++count;
    for (const auto& timer : timers) timer.invalidate();
  };
  timers = {Timer(0.01, block), Timer(0.01, block)};
  for (const auto& timer : timers) schedule(timer);
  stall(0.05);
  ASSERT_TRUE(runUntil([&] { return count > 0; }));
  RunLoop::main().runFor(0.03);
  EXPECT_EQ(count, 1);
}

TEST(Timer, does_not_enter_a_block_that_is_still_running) {
  int depth = 0;
  int deepest = 0;
  int count = 0;
  const Timer timer(0.001, [&] {
    deepest = std::max(deepest, ++depth);
    RunLoop::main().runFor(0.005);
    --depth;
    ++count;
  });
  schedule(timer);
  ASSERT_TRUE(runUntil([&] { return count >= 3; }));
  timer.invalidate();
  EXPECT_EQ(deepest, 1);
}

}  // namespace
}  // namespace vorrin
