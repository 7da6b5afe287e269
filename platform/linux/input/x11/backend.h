#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/x11/tap.h"

namespace vorrin::x11 {

/// Keyboard listening and input synthesis on an X server, which asks no permission of its clients.
/// There is one tap at a time, and what is posted goes over its connection.
class Backend {
 public:
  std::shared_ptr<Tap> createTap(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated);
  static std::optional<PointerLocation> pointerLocation() { return PointerLocation{}; }
  void post(std::span<const SyntheticEvent> events);

 private:
  std::weak_ptr<Tap> tap_;
};

}  // namespace vorrin::x11
