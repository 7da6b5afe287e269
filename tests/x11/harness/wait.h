#pragma once

#include <chrono>
#include <cstdint>
#include <functional>

namespace vorrin::x11_tests {

/// Long enough for anything that happens at all, also on a loaded machine with sanitizers.
inline constexpr std::chrono::seconds patience{20};

/// Asks `holds` again and again until it answers true, for conditions that announce themselves by
/// nothing that could be waited for. False when `bound` has passed.
bool waitUntil(const std::function<bool()>& holds, std::chrono::milliseconds bound = patience);

/// The monotonic clock, as a client's events are stamped with it on arrival.
std::int64_t monotonicNanoseconds();

/// Lets time pass, where its passing is what matters and not something that happens meanwhile.
void waitFor(std::chrono::nanoseconds duration);

}  // namespace vorrin::x11_tests
