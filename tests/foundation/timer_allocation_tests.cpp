#include <gtest/gtest.h>

#include "platform/run_loop.h"
#include "platform/timer.h"
#include "tests/unit/support/allocation_count.h"

namespace vorrin {
namespace {

TEST(TimerAllocation, happens_at_no_firing) {
  long before = 0;
  int count = 0;
  constexpr int warmUp = 5;
  constexpr int measured = 50;
  long during = -1;
  const Timer timer(0.001, [&] {
    if (++count == warmUp) before = test::allocationCount();
    if (count == warmUp + measured) during = test::allocationCount() - before;
  });
  RunLoop::main().add(timer, RunLoopMode::common);
  // One long run: what the run loop itself needs is made at its beginning.
  RunLoop::main().runFor(1);
  timer.invalidate();
  EXPECT_EQ(during, 0);
}

}  // namespace
}  // namespace vorrin
