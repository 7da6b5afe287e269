#pragma once

#include <memory>
#include <string>
#include <vector>

#include "platform/color.h"

namespace vorrin {

/// A rectangle in points; the origin is the upper left corner.
struct Rect {
  double x = 0;
  double y = 0;
  double width = 0;
  double height = 0;

  [[nodiscard]] double maxX() const { return x + width; }
  [[nodiscard]] double maxY() const { return y + height; }
};

/// A native view. This and all classes derived from it are small values that refer to a native
/// object and share its ownership: a copy refers to the same object, two values are equal when they
/// refer to the same object. A default-made value refers to nothing and only serves to be assigned
/// to.
class View {
 public:
  View() = default;

  /// A plain view that draws nothing and takes the room that its row leaves over.
  static View spacer();

  /// The views inside this one, in the order they were added.
  [[nodiscard]] std::vector<View> subviews() const;

  /// Whether this is a control (a label, field, button, check box or pop-up).
  [[nodiscard]] bool isControl() const;

  [[nodiscard]] Rect bounds() const;

  /// This view's bounds in the coordinates of `root`, a view it lies in.
  [[nodiscard]] Rect boundsIn(const View& root) const;

  /// Fixes the width to `points`.
  void setWidth(double points) const;

  /// Fixes the height to `points`.
  void setHeight(double points) const;

  /// Draws the view as one filled plane of this colour.
  void setBackgroundColor(const Color& color) const;

  /// Puts `child` inside with its top `top` points below this view's top, centred from left to
  /// right, `width` points wide. Nothing holds its bottom.
  void addTopCentered(const View& child, double top, double width) const;

  /// Brings the positions of all views inside up to date at once.
  void layoutSubtreeIfNeeded() const;

  /// A PNG picture of the view as it is drawn now; empty when the system could not make one.
  [[nodiscard]] std::string pngSnapshot() const;

  /// Kind and name, for diagnostics.
  [[nodiscard]] std::string description() const;

  explicit operator bool() const { return native_ != nullptr; }
  bool operator==(const View& other) const;

  struct Native;
  /// The native object, for the other classes of the platform.
  [[nodiscard]] const std::shared_ptr<Native>& native() const { return native_; }

 protected:
  explicit View(std::shared_ptr<Native> native) : native_(std::move(native)) {}
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
