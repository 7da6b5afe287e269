#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::machine {

/// A keyboard as the kernel's HID driver sees it, with lights, media keys and pointer parts: for
/// everybody else a real one. It is unplugged when the value goes.
class UhidKeyboard {
 public:
  explicit UhidKeyboard(const std::string& name);

  /// Keys have the kernel's numbers; a key without a place on this keyboard ends the test.
  void press(int key) { set(key, true); }
  void release(int key) { set(key, false); }
  void tap(int key);
  void releaseAll();
  /// Moves the pointer part once.
  void move(std::int8_t x, std::int8_t y);

  /// The lights as last set from outside, a bit each (bit 1 is Caps Lock); nothing before that.
  std::optional<unsigned> lights();

 private:
  void set(int key, bool down);
  void send(std::int8_t x, std::int8_t y);

  FileDescriptor device_;
  std::set<int> down_;
  std::optional<unsigned> lights_;
};

}  // namespace vorrin::machine
