#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tests/x11/harness/display.h"

namespace vorrin::x11_tests {

/// The windows on a desktop, as its window manager lists them.
class Windows {
 public:
  explicit Windows(const std::string& display) : display_(openDisplay(display)) {}

  /// The windows that the window manager manages, oldest first.
  std::vector<unsigned long> all() { return windowsIn("_NET_CLIENT_LIST"); }

  /// The first window with this title; nothing when there is none.
  std::optional<unsigned long> titled(const std::string& title);

  /// The window that gets what is typed; 0 when none does.
  unsigned long active();

  /// Asks the window manager to put the window in front and give it the focus, and waits for that.
  /// False when it does not happen.
  bool activate(unsigned long window);
  /// The same without the waiting.
  void ask(unsigned long window);

  /// Its width in pixels, without the frame.
  unsigned widthOf(unsigned long window);

  /// Asks the program that shows the window to close it.
  void close(unsigned long window);

 private:
  [[nodiscard]] std::string property(unsigned long window, const char* name) const;
  [[nodiscard]] std::vector<unsigned long> windowsIn(const char* name) const;
  void tellManager(unsigned long window, const char* message) const;

  DisplayPointer display_;
};

}  // namespace vorrin::x11_tests
