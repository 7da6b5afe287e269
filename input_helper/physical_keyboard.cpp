#include "input_helper/physical_keyboard.h"

#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string>
#include <utility>

namespace vorrin::input_helper {
namespace {

/// The real path of the device in /sys, by its number: names can be anything.
std::string placeInSys(int device) {
  struct stat status {};
  if (::fstat(device, &status) != 0) return {};
  const auto link = "/sys/dev/char/" + std::to_string(major(status.st_rdev)) + ":" +
                    std::to_string(minor(status.st_rdev));
  std::error_code failure;
  return std::filesystem::canonical(link, failure).string();
}

/// What the clone must not have: its repeats are the keyboard's own, passed on, and force feedback
/// would have to be served.
Evdev cloneModel(int device) {
  libevdev* model = nullptr;
  if (libevdev_new_from_fd(device, &model) != 0) return nullptr;
  libevdev_disable_event_type(model, EV_REP);
  libevdev_disable_event_type(model, EV_FF);
  return Evdev(model);
}

Moment momentOf(const input_event& event) {
  return Moment(std::chrono::seconds(event.input_event_sec) +
                std::chrono::microseconds(event.input_event_usec));
}

}  // namespace

bool isKeyboard(const libevdev* device) {
  const auto has = [device](unsigned key) {
    return libevdev_has_event_code(device, EV_KEY, key) != 0;
  };
  return has(helper_protocol::escapeKey) || std::ranges::any_of(helper_protocol::shortcutKeys, has);
}

bool isMadeByProgram(const std::string& place) {
  // .../devices/virtual/input/inputN/eventM; unknown places are left alone as well.
  return place.empty() || place.starts_with("/sys/devices/virtual/input/");
}

PhysicalKeyboard::PhysicalKeyboard(FileDescriptor device, MadeDevice clone)
    : device_(std::move(device)), clone_(std::move(clone)) {}

std::optional<PhysicalKeyboard> PhysicalKeyboard::adopt(
    FileDescriptor device, const std::function<FileDescriptor()>& openUinput) {
  if (isMadeByProgram(placeInSys(device.number()))) return std::nullopt;
  const Evdev model = cloneModel(device.number());
  if (!model || !isKeyboard(model.get())) return std::nullopt;
  int clock = CLOCK_MONOTONIC;
  if (::ioctl(device.number(), EVIOCSCLOCKID, &clock) != 0) return std::nullopt;
  auto uinput = openUinput();
  if (!uinput.isOpen()) return std::nullopt;
  auto clone = MadeDevice::create(model.get(), std::move(uinput));
  if (!clone) return std::nullopt;
  return PhysicalKeyboard(std::move(device), std::move(*clone));
}

bool PhysicalKeyboard::read(const Reader& reader) {
  std::array<input_event, 64> events;
  for (;;) {
    const auto size = ::read(device_.number(), events.data(), sizeof events);
    if (size < 0 && errno == EINTR) continue;
    if (size < 0 && errno == EAGAIN) return true;
    if (size <= 0) return false;
    for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i) {
      const auto& event = events[i];
      if (event.type == EV_SYN && event.code == SYN_DROPPED) {
        // The frame so far is whole as far as it goes, and everybody else may have seen it.
        if (!partial_.empty()) reader.frame(std::exchange(partial_, {}), momentOf(event));
        dropping_ = true;
      } else if (event.type == EV_SYN && event.code == SYN_REPORT) {
        if (std::exchange(dropping_, false)) {
          // Asking for the keys empties the queue of older key events, so nothing comes twice.
          partial_.clear();
          reader.resynchronised(keysDown());
          break;
        }
        if (!partial_.empty()) reader.frame(std::exchange(partial_, {}), momentOf(event));
      } else if (!dropping_) {
        partial_.push_back({event.type, event.code, event.value});
      }
    }
  }
}

GrabResult PhysicalKeyboard::grab() const {
  const auto before = std::chrono::steady_clock::now();
  if (::ioctl(device_.number(), EVIOCGRAB, 1) == 0) return {GrabOutcome::grabbed, before};
  return {errno == EBUSY ? GrabOutcome::busy : GrabOutcome::gone, before};
}

Moment PhysicalKeyboard::ungrab() const {
  const auto before = std::chrono::steady_clock::now();
  ::ioctl(device_.number(), EVIOCGRAB, 0);
  return before;
}

void PhysicalKeyboard::copyLights() const {
  std::array<input_event, 64> events;
  for (;;) {
    const auto size = ::read(clone_.number(), events.data(), sizeof events);
    if (size <= 0) return;
    Frame lights;
    for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i) {
      const auto& event = events[i];
      if (event.type == EV_LED) lights.push_back({event.type, event.code, event.value});
    }
    if (!lights.empty()) writeFrame(device_.number(), lights);
  }
}

KeySet PhysicalKeyboard::keysDown() const {
  std::array<std::uint8_t, KEY_CNT / 8> bits{};
  KeySet keys;
  if (::ioctl(device_.number(), EVIOCGKEY(sizeof bits), bits.data()) < 0) return keys;
  for (std::size_t key = 0; key < KEY_CNT; ++key)
    keys.set(key, ((bits[key / 8] >> (key % 8)) & 1) != 0);
  return keys;
}

}  // namespace vorrin::input_helper
