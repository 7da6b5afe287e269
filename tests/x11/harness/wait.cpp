#include "tests/x11/harness/wait.h"

#include <thread>

namespace vorrin::x11_tests {

bool waitUntil(const std::function<bool()>& holds, std::chrono::milliseconds bound) {
  const auto end = std::chrono::steady_clock::now() + bound;
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

std::int64_t monotonicNanoseconds() {
  return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

void waitFor(std::chrono::nanoseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace vorrin::x11_tests
