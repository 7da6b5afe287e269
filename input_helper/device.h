#pragma once

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <memory>
#include <optional>
#include <span>
#include <string>

#include "input_helper/frame.h"
#include "input_helper/protocol/file_descriptor.h"

namespace vorrin::input_helper {

using helper_protocol::FileDescriptor;

/// What this program's own devices carry as their physical place, so that they can be told from all
/// others.
inline constexpr const char* ownPlace = "vorrin-input-helper";

struct EvdevDeleter {
  void operator()(libevdev* device) const { libevdev_free(device); }
};
using Evdev = std::unique_ptr<libevdev, EvdevDeleter>;

/// A device that this program made. The kernel releases what is held on it and takes it away when
/// the value goes.
class MadeDevice {
 public:
  /// Makes a device with the name, numbers and capabilities of `model` from `uinput`, an open
  /// /dev/uinput. Nothing when the kernel refuses.
  static std::optional<MadeDevice> create(const libevdev* model, FileDescriptor uinput);

  /// Writes one frame and its end in one step, so that no other reader sees a part.
  void write(std::span<const InputEvent> frame) const;

  /// For waiting and reading: what others write to the device, such as its LEDs.
  [[nodiscard]] int number() const { return uinput_.number(); }

 private:
  struct Deleter {
    void operator()(libevdev_uinput* device) const { libevdev_uinput_destroy(device); }
  };
  MadeDevice(FileDescriptor uinput, libevdev_uinput* device);

  FileDescriptor uinput_;  // outlives the device below, which is taken away first
  std::unique_ptr<libevdev_uinput, Deleter> device_;
};

/// Writes one frame and its end to an evdev or uinput descriptor. Errors show at the next read.
void writeFrame(int descriptor, std::span<const InputEvent> frame);

}  // namespace vorrin::input_helper
