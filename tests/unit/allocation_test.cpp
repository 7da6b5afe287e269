#include <gtest/gtest.h>

#include <new>

#include "bridge/event_synthesis.h"
#include "bridge/keyboard_listener.h"
#include "support/system_test.h"
#include "tests/unit/support/allocation_count.h"

namespace vorrin {
namespace {

using AllocationTest = test::SystemTest;

TEST_F(AllocationTest, the_counter_counts) {
  const long before = test::allocationCount();
  // Called by its name, for the compiler may leave a new-expression out.
  ::operator delete(::operator new(1));
  EXPECT_EQ(test::allocationCount(), before + 1);
}

TEST_F(AllocationTest, a_tick_of_either_macro_allocates_nothing) {
  connectKeyboardListener();
  const std::function<void()> refresh = [] {};
  engine.emit = [&refresh](int macro) { emitMacro(macro, refresh); };
  engine.toggle(0);
  engine.toggle(1);
  const long before = test::allocationCount();
  fake::advance(1);
  EXPECT_EQ(test::allocationCount(), before);
  EXPECT_EQ(fake::system().batches.size(), 1020U);
}

TEST_F(AllocationTest, a_key_that_is_no_shortcut_passes_without_an_allocation) {
  connectKeyboardListener();
  const long before = test::allocationCount();
  fake::feed({.type = EventType::keyDown, .keyCode = 0});
  fake::feed({.type = EventType::keyUp, .keyCode = 0});
  EXPECT_EQ(test::allocationCount(), before);
}

}  // namespace
}  // namespace vorrin
