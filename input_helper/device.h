#pragma once

#include <libevdev/libevdev-uinput.h>
#include <libevdev/libevdev.h>

#include <memory>
#include <optional>
#include <span>

#include "input_helper/frame.h"
#include "input_helper/uinput.h"

namespace vorrin::input_helper {

/// What this program's own devices carry as their physical place, so that they can be told from all
/// others.
inline constexpr const char* ownPlace = "vorrin-input-helper";

struct EvdevDeleter {
  void operator()(libevdev* device) const { libevdev_free(device); }
};
using Evdev = std::unique_ptr<libevdev, EvdevDeleter>;

/// Writes one frame and its end to an evdev or uinput descriptor. Errors show at the next read.
void writeFrame(int descriptor, std::span<const InputEvent> frame);

/// A device that this program made. The kernel releases what is held on it and takes it away when
/// the value goes.
class MadeDevice {
 public:
  /// Makes a device with the name, numbers and capabilities of `model`. Nothing when the kernel
  /// refuses. `uinput` has to outlive the device.
  static std::optional<MadeDevice> create(const libevdev* model, Uinput& uinput);
  MadeDevice(MadeDevice&&) = default;
  MadeDevice& operator=(MadeDevice&&) = delete;
  ~MadeDevice();

  /// Writes one frame and its end in one step, so that no other reader sees a part.
  void write(std::span<const InputEvent> frame) const { writeFrame(number(), frame); }

  /// For waiting and reading: what others write to the device, such as its LEDs.
  [[nodiscard]] int number() const { return descriptor_.get(); }

 private:
  struct Deleter {
    void operator()(libevdev_uinput* device) const { libevdev_uinput_destroy(device); }
  };
  MadeDevice(Uinput& uinput, FileDescriptor descriptor, libevdev_uinput* device);

  Uinput* uinput_;
  FileDescriptor descriptor_;
  std::unique_ptr<libevdev_uinput, Deleter> device_;
};

}  // namespace vorrin::input_helper
