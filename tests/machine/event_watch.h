#pragma once

#include <linux/input.h>

#include <chrono>
#include <map>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::machine {

/// One event as another program sees it.
struct SeenEvent {
  std::string device;  ///< its name
  std::string place;   ///< its physical place, as the device says it
  std::uint16_t type = 0;
  std::uint16_t code = 0;
  int value = 0;
};

/// Reads every input device there is, as a compositor would, and remembers what came.
class EventWatch {
 public:
  /// Opens devices that are new, forgets those that are gone, and reads everything.
  void look();

  [[nodiscard]] const std::vector<SeenEvent>& seen() const { return seen_; }
  void forget() { seen_.clear(); }

  /// Key presses, repeats and releases in their order, as "KEY VALUE" with the kernel's numbers.
  [[nodiscard]] std::vector<std::string> keys() const;
  /// Whether a device of this place is there; with a name, also of this name.
  [[nodiscard]] bool has(const std::string& place, const std::string& name = {}) const;
  /// The keys down on all devices together, as the kernel has them.
  [[nodiscard]] std::vector<int> held() const;
  /// Whether a program that wants the device for itself would get it. Asking takes it for an
  /// instant, so it is done a few times a second at most, and the call waits for its turn.
  [[nodiscard]] bool isFree(const std::string& place, const std::string& name);
  /// A descriptor of the device, for tests that act on it as another program; -1 when it is absent.
  [[nodiscard]] int device(const std::string& place, const std::string& name) const;

 private:
  struct Device {
    FileDescriptor file;
    std::string name;
    std::string place;
  };
  void openNew();
  bool read(const Device& device);

  std::chrono::steady_clock::time_point nextOpening_;
  std::chrono::steady_clock::time_point nextAsking_;
  std::map<std::string, Device> devices_;  ///< by file name
  std::vector<SeenEvent> seen_;
};

}  // namespace vorrin::machine
