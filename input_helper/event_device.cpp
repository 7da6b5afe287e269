#include "input_helper/event_device.h"

#include <sys/inotify.h>
#include <sys/sysmacros.h>
#include <systemd/sd-device.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>
#include <cstring>
#include <filesystem>
#include <memory>
#include <string_view>
#include <system_error>
#include <utility>

namespace vorrin::input_helper {
namespace {

/// udev puts a file in its place here whenever it is done with a device. Its messages do not reach
/// a program that is closed off from the network.
constexpr const char* udevData = "/run/udev/data";
constexpr std::string_view madeByPrograms = "/sys/devices/virtual/input/";
constexpr std::string_view inputPrefix = "c13:";

struct Unref {
  void operator()(sd_device* device) const { sd_device_unref(device); }
};

std::optional<EventDevice> describe(sd_device* device) {
  const char* name = nullptr;
  const char* node = nullptr;
  const char* place = nullptr;
  const char* seat = nullptr;
  EventDevice described;
  if (sd_device_get_is_initialized(device) <= 0 || sd_device_get_sysname(device, &name) < 0 ||
      !std::string_view(name).starts_with("event") || sd_device_get_devname(device, &node) < 0 ||
      sd_device_get_syspath(device, &place) < 0 ||
      sd_device_get_devnum(device, &described.number) < 0) {
    return std::nullopt;
  }
  const int named = sd_device_get_property_value(device, "ID_SEAT", &seat);
  if (named < 0 && named != -ENOENT) return std::nullopt;
  described.node = node;
  described.isMadeByProgram = std::string_view(place).starts_with(madeByPrograms);
  // What no seat is named for belongs to the first, as everybody takes it.
  described.seat = named < 0 ? firstSeat : seat;
  return described;
}

std::optional<dev_t> numberIn(std::string_view fileName) {
  if (!fileName.starts_with(inputPrefix)) return std::nullopt;
  fileName.remove_prefix(inputPrefix.size());
  unsigned minor = 0;
  const auto [stop, failure] = std::from_chars(fileName.begin(), fileName.end(), minor);
  if (failure != std::errc() || stop != fileName.end()) return std::nullopt;
  return makedev(inputMajor, minor);
}

}  // namespace

std::optional<EventDevice> findEventDevice(dev_t number) {
  sd_device* found = nullptr;
  if (sd_device_new_from_devnum(&found, 'c', number) < 0) return std::nullopt;
  const std::unique_ptr<sd_device, Unref> device(found);
  return describe(found);
}

std::vector<EventDevice> allEventDevices() {
  std::vector<EventDevice> devices;
  std::error_code failure;
  for (const auto& entry : std::filesystem::directory_iterator(udevData, failure)) {
    const auto number = numberIn(entry.path().filename().native());
    auto device = number ? findEventDevice(*number) : std::nullopt;
    if (device) devices.push_back(std::move(*device));
  }
  return devices;
}

FileDescriptor watchEventDevices() {
  FileDescriptor watch(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (::inotify_add_watch(watch.get(), udevData, IN_MOVED_TO) < 0) return {};
  return watch;
}

void readNews(const FileDescriptor& watch, const std::function<void(dev_t)>& changed) {
  alignas(inotify_event) std::array<char, 4096> buffer;
  const auto size = ::read(watch.get(), buffer.data(), buffer.size());
  for (ssize_t at = 0; at < size;) {
    inotify_event notice{};
    std::memcpy(&notice, buffer.data() + at, sizeof notice);
    const char* name = buffer.data() + at + sizeof notice;
    at += static_cast<ssize_t>(sizeof notice + notice.len);
    if (notice.len == 0) continue;
    if (const auto found = numberIn(name)) changed(*found);
  }
}

}  // namespace vorrin::input_helper
