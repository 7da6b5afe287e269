#include "platform/linux/widgets/native_view.h"

#include <QCoreApplication>

namespace vorrin {

namespace {

/// Opens the protected way from a native record to a value.
struct AnyView : View {
  explicit AnyView(std::shared_ptr<Native> native) : View(std::move(native)) {}
};

}  // namespace

View::Native::~Native() {
  // Later, because the last value may go away inside an event handler of this very widget.
  if (widget && widget->parent() == nullptr) widget->deleteLater();
}

std::shared_ptr<View::Native> nativeOf(QWidget& widget) {
  auto* view = dynamic_cast<NativeView*>(&widget);
  precondition(view != nullptr, "the widget is a native view");
  auto native = view->native_.lock();
  if (native == nullptr) {
    native = std::make_shared<View::Native>(widget);
    view->native_ = native;
  }
  return native;
}

View viewOf(QWidget& widget) {
  return AnyView(nativeOf(widget));
}

}  // namespace vorrin
