#include "input_helper/event_loop.h"

#include <sys/epoll.h>

#include <utility>

namespace vorrin::input_helper {
namespace {

int call(void* handler) {
  // A copy, for the call may end what it belongs to.
  const auto ready = *static_cast<const Awaited::Handler*>(handler);
  ready();
  return 0;
}

}  // namespace

Awaited::Awaited(sd_event* loop, int descriptor, Priority priority, Handler ready)
    : handler_(std::make_unique<Handler>(std::move(ready))) {
  if (descriptor < 0) return;
  sd_event_source* source = nullptr;
  sd_event_add_io(
      loop, &source, descriptor, EPOLLIN,
      [](sd_event_source*, int, std::uint32_t, void* handler) { return call(handler); },
      handler_.get());
  source_.reset(source);
  sd_event_source_set_priority(source, static_cast<int>(priority));
}

Awaited Awaited::timer(sd_event* loop, Priority priority, Handler ready) {
  Awaited awaited;
  awaited.handler_ = std::make_unique<Handler>(std::move(ready));
  sd_event_source* source = nullptr;
  constexpr std::uint64_t accuracyMicroseconds = 1000;
  sd_event_add_time(
      loop, &source, CLOCK_MONOTONIC, 0, accuracyMicroseconds,
      [](sd_event_source*, std::uint64_t, void* handler) { return call(handler); },
      awaited.handler_.get());
  awaited.source_.reset(source);
  sd_event_source_set_priority(source, static_cast<int>(priority));
  awaited.setTime(std::nullopt);
  return awaited;
}

void Awaited::setTime(std::optional<std::chrono::steady_clock::time_point> time) {
  if (time) {
    const auto since = time->time_since_epoch();
    const auto due = std::chrono::ceil<std::chrono::microseconds>(since).count();
    sd_event_source_set_time(source_.get(), static_cast<std::uint64_t>(due));
  }
  sd_event_source_set_enabled(source_.get(), time ? SD_EVENT_ONESHOT : SD_EVENT_OFF);
}

}  // namespace vorrin::input_helper
