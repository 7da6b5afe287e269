#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>
#include <new>

#include "bridge/event_synthesis.h"
#include "bridge/keyboard_listener.h"
#include "support/system_test.h"

namespace {

std::size_t allocations = 0;

}  // namespace

void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace vorrin {
namespace {

using AllocationTest = test::SystemTest;

TEST_F(AllocationTest, the_counter_counts) {
  const std::size_t before = allocations;
  // Called by its name, for the compiler may leave a new-expression out.
  ::operator delete(::operator new(1));
  EXPECT_EQ(allocations, before + 1);
}

TEST_F(AllocationTest, a_tick_of_either_macro_allocates_nothing) {
  connectKeyboardListener();
  const std::function<void()> refresh = [] {};
  engine.emit = [&refresh](int macro) { emitMacro(macro, refresh); };
  engine.toggle(0);
  engine.toggle(1);
  const std::size_t before = allocations;
  fake::advance(1);
  EXPECT_EQ(allocations, before);
  EXPECT_EQ(fake::system().batches.size(), 1020U);
}

TEST_F(AllocationTest, a_key_that_is_no_shortcut_passes_without_an_allocation) {
  connectKeyboardListener();
  const std::size_t before = allocations;
  fake::feed({.type = EventType::keyDown, .keyCode = 0});
  fake::feed({.type = EventType::keyUp, .keyCode = 0});
  EXPECT_EQ(allocations, before);
}

}  // namespace
}  // namespace vorrin
