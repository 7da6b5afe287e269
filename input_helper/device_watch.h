#pragma once

#include <functional>

#include "input_helper/protocol/file_descriptor.h"

namespace vorrin::input_helper {

using helper_protocol::FileDescriptor;

/// Tells of event devices that come, or that may be openable now because their rights changed.
class DeviceWatch {
 public:
  /// `found` gets the index N of each /dev/input/eventN, possibly more than once.
  explicit DeviceWatch(std::function<void(unsigned index)> found);

  /// Tells of every device that is there already.
  void tellPresent() const;

  /// Readable when `dispatch` has something to do; -1 when the system gives no such news.
  [[nodiscard]] int number() const { return notices_.number(); }
  void dispatch() const;

 private:
  std::function<void(unsigned)> found_;
  FileDescriptor notices_;
};

}  // namespace vorrin::input_helper
