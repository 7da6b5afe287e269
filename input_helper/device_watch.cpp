#include "input_helper/device_watch.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <array>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <optional>
#include <string_view>
#include <utility>

namespace vorrin::input_helper {
namespace {

constexpr const char* folder = "/dev/input";

std::optional<unsigned> indexOf(std::string_view name) {
  constexpr std::string_view prefix = "event";
  if (!name.starts_with(prefix)) return std::nullopt;
  unsigned index = 0;
  const auto* const end = name.data() + name.size();
  const auto [stop, failure] = std::from_chars(name.data() + prefix.size(), end, index);
  if (failure != std::errc() || stop != end) return std::nullopt;
  return index;
}

}  // namespace

DeviceWatch::DeviceWatch(std::function<void(unsigned)> found)
    : found_(std::move(found)), notices_(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {
  // Rights are often given a moment after the device was made, which shows as IN_ATTRIB.
  if (notices_.isOpen()) ::inotify_add_watch(number(), folder, IN_CREATE | IN_ATTRIB);
}

void DeviceWatch::tellPresent() const {
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(folder, failure)) {
    if (const auto index = indexOf(entry.path().filename().native())) found_(*index);
  }
}

void DeviceWatch::dispatch() const {
  alignas(inotify_event) std::array<char, 4096> buffer;
  const auto size = ::read(number(), buffer.data(), buffer.size());
  for (ssize_t at = 0; at < size;) {
    inotify_event notice{};
    std::memcpy(&notice, buffer.data() + at, sizeof notice);
    const char* name = buffer.data() + at + sizeof notice;
    at += static_cast<ssize_t>(sizeof notice + notice.len);
    if ((notice.mask & IN_Q_OVERFLOW) != 0) tellPresent();
    if (notice.len == 0) continue;
    if (const auto index = indexOf(name)) found_(*index);
  }
}

}  // namespace vorrin::input_helper
