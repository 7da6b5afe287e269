#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <thread>

namespace vorrin::x11_tests {

/// Long enough for anything that happens at all, also on a loaded machine with sanitizers.
inline constexpr std::chrono::seconds patience{20};

/// Asks `holds` again and again until it answers true, for conditions that announce themselves by
/// nothing that could be waited for. False when `bound` has passed.
inline bool waitUntil(const std::function<bool()>& holds,
                      std::chrono::milliseconds bound = patience) {
  const auto end = std::chrono::steady_clock::now() + bound;
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

/// The monotonic clock, as a client's events are stamped with it on arrival.
inline std::int64_t monotonicNanoseconds() {
  return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Lets time pass, where its passing is what matters and not something that happens meanwhile.
inline void waitFor(std::chrono::nanoseconds duration) {
  std::this_thread::sleep_for(duration);
}

}  // namespace vorrin::x11_tests
