#include "input_helper/physical_keyboard.h"

#include <fcntl.h>
#include <linux/input.h>
#include <sys/ioctl.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace vorrin::input_helper {
namespace {

/// Whether it can send a shortcut key or Escape.
bool isKeyboard(const libevdev* device) {
  const auto has = [device](unsigned key) {
    return libevdev_has_event_code(device, EV_KEY, key) != 0;
  };
  return has(helper_protocol::escapeKey) || std::ranges::any_of(helper_protocol::shortcutKeys, has);
}

/// The device itself: its node may have become another's since udev told of it.
FileDescriptor openNode(const EventDevice& device) {
  FileDescriptor opened(::open(device.node.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  struct stat status {};
  const bool isIt = opened.isOpen() && ::fstat(opened.get(), &status) == 0 &&
                    S_ISCHR(status.st_mode) && status.st_rdev == device.number;
  return isIt ? std::move(opened) : FileDescriptor();
}

/// What the clone must not have: its repeats are the keyboard's own, passed on, scan codes are left
/// out, and force feedback would have to be served.
Evdev cloneModel(int device) {
  libevdev* model = nullptr;
  if (libevdev_new_from_fd(device, &model) != 0) return nullptr;
  libevdev_disable_event_type(model, EV_REP);
  libevdev_disable_event_type(model, EV_MSC);
  libevdev_disable_event_type(model, EV_FF);
  return Evdev(model);
}

Moment momentOf(const input_event& event) {
  return Moment(std::chrono::seconds(event.input_event_sec) +
                std::chrono::microseconds(event.input_event_usec));
}

}  // namespace

PhysicalKeyboard::PhysicalKeyboard(FileDescriptor device, MadeDevice clone)
    : device_(std::move(device)), clone_(std::move(clone)) {}

std::optional<PhysicalKeyboard> PhysicalKeyboard::open(const EventDevice& device, Uinput& uinput) {
  if (device.isMadeByProgram) return std::nullopt;
  auto opened = openNode(device);
  if (!opened.isOpen()) return std::nullopt;
  const Evdev model = cloneModel(opened.get());
  int clock = CLOCK_MONOTONIC;
  if (!model || !isKeyboard(model.get()) || ::ioctl(opened.get(), EVIOCSCLOCKID, &clock) != 0)
    return std::nullopt;
  auto clone = MadeDevice::create(model.get(), uinput);
  if (!clone) return std::nullopt;
  return PhysicalKeyboard(std::move(opened), std::move(*clone));
}

bool PhysicalKeyboard::read(Filter& filter, KeyboardId id) {
  std::array<input_event, 64> events;
  const auto size = ::read(device_.get(), events.data(), sizeof events);
  if (size <= 0) return size < 0 && (errno == EINTR || errno == EAGAIN);
  for (std::size_t i = 0; i < static_cast<std::size_t>(size) / sizeof(input_event); ++i) {
    const auto& event = events[i];
    if (event.type != EV_SYN) {
      partial_.push_back({event.type, event.code, event.value});
    } else if (event.code == SYN_DROPPED) {
      return false;
    } else if (event.code == SYN_REPORT && !partial_.empty()) {
      filter.receive(id, std::exchange(partial_, {}), momentOf(event),
                     std::chrono::steady_clock::now());
    }
  }
  return true;
}

GrabResult PhysicalKeyboard::grab() const {
  const auto before = std::chrono::steady_clock::now();
  if (::ioctl(device_.get(), EVIOCGRAB, 1) == 0) return {GrabOutcome::grabbed, before};
  return {errno == EBUSY ? GrabOutcome::busy : GrabOutcome::gone, before};
}

Moment PhysicalKeyboard::ungrab() const {
  const auto before = std::chrono::steady_clock::now();
  ::ioctl(device_.get(), EVIOCGRAB, 0);
  return before;
}

void PhysicalKeyboard::copyLights() const {
  std::array<input_event, 64> events;
  const auto size = ::read(clone_.number(), events.data(), sizeof events);
  Frame lights;
  for (std::size_t i = 0; size > 0 && i < static_cast<std::size_t>(size) / sizeof(input_event);
       ++i) {
    const auto& event = events[i];
    if (event.type == EV_LED) lights.push_back({event.type, event.code, event.value});
  }
  if (!lights.empty()) writeFrame(device_.get(), lights);
}

KeySet PhysicalKeyboard::keysDown() const {
  std::array<std::uint8_t, KEY_CNT / 8> bits{};
  KeySet keys;
  if (::ioctl(device_.get(), EVIOCGKEY(sizeof bits), bits.data()) < 0) return keys;
  for (std::size_t key = 0; key < KEY_CNT; ++key)
    keys.set(key, ((bits[key / 8] >> (key % 8)) & 1) != 0);
  return keys;
}

}  // namespace vorrin::input_helper
