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

/// The kernel's major number of all input devices.
inline constexpr unsigned inputMajor = 13;

/// An event device as udev knows it.
struct EventDevice {
  dev_t number = 0;
  std::string node;  ///< its path in /dev
  std::string seat;
  /// By uinput. Bluetooth keyboards are virtual too, but have a parent of their own.
  bool isMadeByProgram = false;
};

/// The event device of this number. Nothing as long as udev is not done with it: until then nobody
/// can say which seat it belongs to.
std::optional<EventDevice> findEventDevice(dev_t number);

/// All that udev is done with.
std::vector<EventDevice> allEventDevices();

/// Becomes readable when udev got done with input devices: new ones, and those that something
/// changed for. Closed without udev.
FileDescriptor watchEventDevices();

/// Hands all news to `changed`, each device by its number.
void readNews(const FileDescriptor& watch, const std::function<void(dev_t)>& changed);

}  // namespace vorrin::input_helper
