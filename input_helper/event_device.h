#pragma once

#include <sys/types.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::input_helper {

/// The only seat that is served: what uinput makes belongs to it.
inline constexpr const char* firstSeat = "seat0";

/// An event device as udev knows it.
struct EventDevice {
  dev_t number = 0;
  std::string node;   ///< its path in /dev
  std::string place;  ///< its path in /sys
  std::string seat;

  /// Whether uinput made it. Bluetooth keyboards are virtual too, but have a parent of their own.
  [[nodiscard]] bool isMadeByProgram() const {
    return place.starts_with("/sys/devices/virtual/input/");
  }
};

/// The event device of this number. Nothing as long as udev is not done with it: until then nobody
/// can say which seat it belongs to.
std::optional<EventDevice> findEventDevice(dev_t number);

/// All that udev is done with.
std::vector<EventDevice> allEventDevices();

/// Tells of input devices that udev got done with: new ones, and those that something changed for.
class DeviceNotices {
 public:
  DeviceNotices();
  /// Readable when there is news; -1 without udev.
  [[nodiscard]] int number() const { return notices_.get(); }
  /// Hands all news to `changed`, each device by its number.
  void read(const std::function<void(dev_t)>& changed) const;

 private:
  FileDescriptor notices_;
};

}  // namespace vorrin::input_helper
