#include "platform/linux/input/x11/backend.h"

#include <utility>

namespace vorrin::x11 {

std::shared_ptr<Tap> Backend::createTap(std::uint64_t mask, EventTap::Callback callback,
                                        std::function<void()> invalidated) {
  if (!tap_.expired()) return nullptr;
  std::shared_ptr<Tap> tap = Tap::create(mask, callback, std::move(invalidated));
  tap_ = tap;
  return tap;
}

void Backend::post(std::span<const SyntheticEvent> events) {
  if (const auto tap = tap_.lock()) tap->post(events);
}

}  // namespace vorrin::x11
