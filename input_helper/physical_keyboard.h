#pragma once

#include <optional>

#include "input_helper/device.h"
#include "input_helper/event_device.h"
#include "input_helper/filter.h"

namespace vorrin::input_helper {

/// One keyboard of the user's and the clone that stands in for it while it is grabbed.
class PhysicalKeyboard {
 public:
  /// Opens an event device. Nothing for what is no keyboard, for what a program made, and when no
  /// clone can be made.
  static std::optional<PhysicalKeyboard> open(const EventDevice& device, Uinput& uinput);

  /// Reads what there is once, for the filter, which knows the keyboard by `id`; of a long queue
  /// something may be left. False when the keyboard is gone, or some of its events are.
  [[nodiscard]] bool read(Filter& filter, KeyboardId id);

  [[nodiscard]] GrabResult grab() const;
  /// Tells when it took effect, which the kernel makes it do at the beginning of the call.
  [[nodiscard]] Moment ungrab() const;
  void emit(std::span<const InputEvent> frame) { clone_.write(frame); }
  /// Lights on the keyboard what others lit on its clone. Like `read`, reads once.
  void copyLights() const;

  [[nodiscard]] KeySet keysDown() const;
  [[nodiscard]] int deviceNumber() const { return device_.get(); }
  [[nodiscard]] int cloneNumber() const { return clone_.number(); }

 private:
  PhysicalKeyboard(FileDescriptor device, MadeDevice clone);

  FileDescriptor device_;
  MadeDevice clone_;
  Frame partial_;
};

}  // namespace vorrin::input_helper
