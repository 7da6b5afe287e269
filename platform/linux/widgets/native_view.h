#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>
#include <cmath>
#include <memory>
#include <string_view>

#include "platform/color.h"
#include "platform/fatal_error.h"
#include "platform/view.h"

namespace vorrin {

/// A length in points, rounded to device-independent pixels.
inline int pixels(double points) {
  return static_cast<int>(std::lround(points));
}

/// What all values of one widget share. A widget inside another belongs to that one; a widget on
/// its own lives as long as this record, and so as long as its last value.
struct View::Native {
  explicit Native(QWidget& view) : widget(&view) {}
  ~Native();
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  QPointer<QWidget> widget;
};

/// Base of every widget that a `View` can refer to, beside its Qt class. What a value must find
/// again through another value of the same widget is kept in the widget, never in the value.
class NativeView {
 public:
  NativeView() = default;
  virtual ~NativeView() = default;
  NativeView(const NativeView&) = delete;
  NativeView& operator=(const NativeView&) = delete;

  /// Name of the kind, for diagnostics.
  [[nodiscard]] virtual std::string_view kindName() const = 0;
  [[nodiscard]] virtual bool isControl() const { return true; }
  /// What the view says to the user, for diagnostics.
  [[nodiscard]] virtual QString shownText() const { return {}; }

  /// Of texts: the colour that was chosen for it.
  Color textColor;

 private:
  friend std::shared_ptr<View::Native> nativeOf(QWidget& widget);
  std::weak_ptr<View::Native> native_;
};

/// The record shared by all values of `widget`, which must be a `NativeView`; made when it has
/// none.
std::shared_ptr<View::Native> nativeOf(QWidget& widget);

/// A value of `widget`, which must be a `NativeView`.
View viewOf(QWidget& widget);

/// The widget of `view` as a `Widget`, null when it is of another class or gone.
template <class Widget>
Widget* widgetAs(const View& view) {
  return view ? dynamic_cast<Widget*>(view.native()->widget.data()) : nullptr;
}

/// The same where anything else is a mistake of the program.
template <class Widget = QWidget>
Widget& widgetOf(const View& view) {
  auto* widget = widgetAs<Widget>(view);
  precondition(widget != nullptr, "the view refers to a native view of this kind");
  return *widget;
}

}  // namespace vorrin
