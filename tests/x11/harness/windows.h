#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace vorrin::x11_tests {

/// The windows on a desktop, as its window manager lists them.
class Windows {
 public:
  explicit Windows(const std::string& display);
  ~Windows();
  Windows(const Windows&) = delete;
  Windows& operator=(const Windows&) = delete;

  /// The windows that the window manager manages, oldest first.
  std::vector<unsigned long> all();

  [[nodiscard]] std::string titleOf(unsigned long window);

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

  /// The colour at this place of the window, as 0xRRGGBB.
  unsigned long pixelOf(unsigned long window, int x, int y);

  /// Asks the program that shows the window to close it.
  void close(unsigned long window);

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace vorrin::x11_tests
