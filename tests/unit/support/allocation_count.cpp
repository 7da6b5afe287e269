#include "tests/unit/support/allocation_count.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace {

std::atomic<long> allocations = 0;

}  // namespace

void* operator new(std::size_t size, const std::nothrow_t& /*unused*/) noexcept {
  ++allocations;
  return std::malloc(size);
}

void* operator new(std::size_t size) {
  if (void* const memory = ::operator new(size, std::nothrow)) return memory;
  throw std::bad_alloc();
}

void operator delete(void* memory) noexcept {
  std::free(memory);
}

void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

long vorrin::test::allocationCount() {
  return allocations;
}
