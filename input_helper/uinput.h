#pragma once

#include <cstddef>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::input_helper {

/// Open /dev/uinput, as often as devices may be made at a time: a descriptor stands for one device.
/// They are opened at the start, while this program may, and used again.
class Uinput {
 public:
  /// The two of the macros and thirty keyboards.
  static constexpr std::size_t usualCount = 32;

  explicit Uinput(std::size_t count = usualCount);

  /// Closed when there is none left, or /dev/uinput could not be opened.
  FileDescriptor take();
  /// The device that was made with it is gone.
  void giveBack(FileDescriptor descriptor);

 private:
  std::vector<FileDescriptor> free_;
};

}  // namespace vorrin::input_helper
