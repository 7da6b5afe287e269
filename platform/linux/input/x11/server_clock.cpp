#include "platform/linux/input/x11/server_clock.h"

namespace vorrin::x11 {

namespace {

std::uint32_t differenceOf(std::uint32_t serverTime, ServerClock::Local now) {
  return static_cast<std::uint32_t>(now.count()) - serverTime;
}

}  // namespace

void ServerClock::set(std::uint32_t serverTime, Local now) {
  difference_ = differenceOf(serverTime, now);
}

ServerClock::Local ServerClock::age(std::uint32_t serverTime, Local now) {
  const std::uint32_t difference = differenceOf(serverTime, now);
  const auto delay = static_cast<std::int32_t>(difference - difference_.value_or(difference));
  if (delay < 0) difference_ = difference;
  return Local(delay > 0 ? delay : 0);
}

}  // namespace vorrin::x11
