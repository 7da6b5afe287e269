#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "platform/text_field.h"
#include "platform/view.h"

namespace vorrin {

/// Width and height in points.
struct Size {
  double width = 0;
  double height = 0;
};

namespace window_style {
inline constexpr std::uint32_t titled = 1;
inline constexpr std::uint32_t closable = 2;
inline constexpr std::uint32_t miniaturizable = 4;
inline constexpr std::uint32_t resizable = 8;
}  // namespace window_style

namespace window_collection_behavior {
inline constexpr std::uint32_t fullScreenPrimary = 128;
}  // namespace window_collection_behavior

/// A window on the screen. Copies refer to the same window; it exists, shown or not, while one of
/// them does. Closing it only hides it.
class Window {
 public:
  Window() = default;

  /// Not yet shown. `contentSize` is the size of the content view, without title and menu.
  static Window make(Size contentSize, std::uint32_t styleMask);

  void setTitle(const std::string& title) const;
  void center() const;
  [[nodiscard]] std::uint32_t styleMask() const;
  [[nodiscard]] std::uint32_t collectionBehavior() const;
  void setCollectionBehavior(std::uint32_t behavior) const;
  void setContentMinSize(Size size) const;
  void setContentSize(Size size) const;
  void setBackgroundColor(const Color& color) const;
  [[nodiscard]] Color backgroundColor() const;
  /// Dark window frame and controls, title bar without a plane of its own, as far as the system has
  /// them.
  void setDarkAppearance() const;
  [[nodiscard]] View contentView() const;

  /// Enters or leaves the full screen.
  void toggleFullScreen() const;
  /// Shows the window.
  void orderFront() const;
  /// Shows the window, also when it was minimised, in front of all others and with the keyboard.
  void makeKeyAndOrderFront() const;

  explicit operator bool() const { return native_ != nullptr; }

  struct Native;
  [[nodiscard]] const std::shared_ptr<Native>& native() const { return native_; }

 private:
  explicit Window(std::shared_ptr<Native> native) : native_(std::move(native)) {}
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
