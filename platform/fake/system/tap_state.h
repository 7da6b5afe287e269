#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>

#include "platform/event_tap.h"

namespace vorrin {
namespace fake {

/// A tap of the fake system.
struct TapState {
  std::uint64_t mask = 0;
  std::set<std::uint16_t> claimed;
  EventTap::Callback callback = nullptr;
  std::function<void()> invalidated;
  bool added = false;
  bool enabled = false;
  bool alive = true;

  [[nodiscard]] bool isListening() const { return alive && added && enabled; }
};

/// Makes `tap` one that events are played to for as long as it is referred to.
void registerTap(const std::shared_ptr<TapState>& tap);

}  // namespace fake

struct EventTap::Native : fake::TapState {};

}  // namespace vorrin
