#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vorrin::x11_tests {

/// Where a key press comes from.
enum class Source {
  keyboard,  ///< the server's own keyboard, as a user's hands
  xtest      ///< the device that programs type through
};

/// Key positions that have no macOS key-down event; the numbers are the kernel's.
namespace modifier_keys {
inline constexpr unsigned shift = 42;
inline constexpr unsigned control = 29;
inline constexpr unsigned alt = 56;
inline constexpr unsigned super = 125;
inline constexpr unsigned altGr = 100;
inline constexpr unsigned capsLock = 58;
inline constexpr unsigned numLock = 69;
}  // namespace modifier_keys

/// The digit keys 0 to 9, by their macOS virtual key codes.
inline constexpr std::array<std::uint16_t, 10> digitKeys{29, 18, 19, 20, 21, 23, 22, 26, 28, 25};

/// The name of the keyboard that the server brings along.
inline constexpr const char* serverKeyboard = "Xvfb keyboard";

/// Somebody who types and points. Every call has taken effect in the server when it returns. At the
/// end nothing is left down, and neither a lock nor another layout on.
class User {
 public:
  explicit User(const std::string& display);
  ~User();
  User(const User&) = delete;
  User& operator=(const User&) = delete;

  /// Keys by macOS virtual key code.
  void press(std::uint16_t virtualKey, Source source = Source::keyboard);
  void release(std::uint16_t virtualKey, Source source = Source::keyboard);
  void tap(std::uint16_t virtualKey, Source source = Source::keyboard);

  /// Any key, by the kernel's code.
  void pressEvdev(unsigned code, Source source = Source::keyboard);
  void releaseEvdev(unsigned code, Source source = Source::keyboard);
  void tapEvdev(unsigned code, Source source = Source::keyboard);

  /// Types letters a to z, digits, blanks and full stops.
  void type(std::string_view text);

  /// Presses and releases queue up until `flush`, for bursts.
  void queue(std::uint16_t virtualKey, bool down, Source source);
  void flush();

  /// Moves the pointer into the middle of a window, to a place in it, or to the left end of its
  /// bottom, where windows have nothing to click on.
  void pointAt(unsigned long window);
  void pointAt(unsigned long window, int x, int y);
  void pointAtCorner(unsigned long window);

  /// Buttons as X numbers them; 1 is the left one.
  void pressButton(unsigned button = 1);
  void releaseButton(unsigned button = 1);
  void click(unsigned button = 1);

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

/// The server's key code of a macOS virtual key code.
unsigned keycodeOf(std::uint16_t virtualKey);

/// The character that `User::type` types by this key code of the server's; nothing for other keys.
std::optional<char> characterOf(unsigned keycode);

}  // namespace vorrin::x11_tests
