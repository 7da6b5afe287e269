#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <new>

#include "platform/run_loop.h"
#include "platform/timer.h"

namespace {

std::atomic<long> allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  void* const memory = std::malloc(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace vorrin {
namespace {

TEST(TimerAllocation, happens_at_no_firing) {
  long before = 0;
  int count = 0;
  constexpr int warmUp = 5;
  constexpr int measured = 50;
  long during = -1;
  const Timer timer(0.001, [&] {
    if (++count == warmUp) before = allocations;
    if (count == warmUp + measured) during = allocations - before;
  });
  RunLoop::main().add(timer, RunLoopMode::common);
  // One long run: what the run loop itself needs is made at its beginning.
  RunLoop::main().runFor(1);
  timer.invalidate();
  EXPECT_EQ(during, 0);
}

}  // namespace
}  // namespace vorrin
