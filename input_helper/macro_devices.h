#pragma once

#include <optional>

#include "input_helper/device.h"
#include "input_helper/protocol/protocol.h"

namespace vorrin::input_helper {

/// The keyboard and the pointer that the macros act through. Two devices, so that no system takes
/// the pointer for a keyboard, and none of the user's clones, whose repeating a posted key would
/// end.
class MacroDevices {
 public:
  /// Nothing when the kernel makes no devices for this program.
  static std::optional<MacroDevices> create(Uinput& uinput);

  /// Makes every press and release in a frame of its own.
  void post(const helper_protocol::Post& post);

 private:
  MacroDevices(MadeDevice keyboard, MadeDevice pointer);

  MadeDevice keyboard_;
  MadeDevice pointer_;
};

}  // namespace vorrin::input_helper
