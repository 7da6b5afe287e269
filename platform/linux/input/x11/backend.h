#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <utility>

#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/x11/tap.h"

namespace vorrin::x11 {

/// Keyboard listening and input synthesis on an X server. There is one tap at a time, and what is
/// posted goes over its connection.
class Backend {
 public:
  std::shared_ptr<Tap> createTap(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated) {
    if (!tap_.expired()) return nullptr;
    std::shared_ptr<Tap> tap = Tap::create(mask, callback, std::move(invalidated));
    tap_ = tap;
    return tap;
  }
  void post(std::span<const SyntheticEvent> events) {
    if (const auto tap = tap_.lock()) tap->post(events);
  }
  /// Clicks happen at the pointer wherever it is, so the numbers stay 0.
  static std::optional<PointerLocation> pointerLocation() { return PointerLocation{}; }

 private:
  std::weak_ptr<Tap> tap_;
};

}  // namespace vorrin::x11
