#include "platform/view.h"

#include <QBoxLayout>
#include <QBuffer>
#include <QCoreApplication>
#include <QPixmap>
#include <QResizeEvent>
#include <functional>

#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/plane_widget.h"

namespace vorrin {

namespace {

/// The outer before the inner.
void forEachWidget(QWidget& widget, const std::function<void(QWidget&)>& action) {
  action(widget);
  for (QObject* child : widget.children()) {
    auto* inner = qobject_cast<QWidget*>(child);
    if (inner != nullptr && !inner->isWindow()) forEachWidget(*inner, action);
  }
}

void tellPendingSize(QWidget& widget) {
  if (!widget.testAttribute(Qt::WA_PendingResizeEvent)) return;
  widget.setAttribute(Qt::WA_PendingResizeEvent, false);
  QResizeEvent event(widget.size(), {});
  QCoreApplication::sendEvent(&widget, &event);
}

/// What lies in a window that was never shown does not hear of its size. All layouts forget what
/// they know before the first one asks those inside it.
void layOut(QWidget& window) {
  forEachWidget(window, [](QWidget& widget) {
    if (QLayout* layout = widget.layout()) layout->invalidate();
  });
  forEachWidget(window, [](QWidget& widget) {
    tellPendingSize(widget);
    if (QLayout* layout = widget.layout()) layout->activate();
  });
}

}  // namespace

View View::spacer() {
  auto* widget = new PlaneWidget("Spacer");
  widget->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  return viewOf(*widget);
}

std::vector<View> View::subviews() const {
  std::vector<View> views;
  for (QObject* child : widgetOf(*this).children()) {
    if (dynamic_cast<NativeView*>(child) != nullptr) {
      views.push_back(viewOf(*static_cast<QWidget*>(child)));
    }
  }
  return views;
}

bool View::isControl() const {
  return widgetOf<NativeView>(*this).isControl();
}

Rect View::bounds() const {
  const QSize size = widgetOf(*this).size();
  return {0, 0, static_cast<double>(size.width()), static_cast<double>(size.height())};
}

Rect View::boundsIn(const View& root) const {
  const QPoint origin = widgetOf(*this).mapTo(&widgetOf(root), QPoint(0, 0));
  Rect rect = bounds();
  rect.x = origin.x();
  rect.y = origin.y();
  return rect;
}

void View::setWidth(double points) const {
  widgetOf(*this).setFixedWidth(pixels(points));
}

void View::setHeight(double points) const {
  widgetOf(*this).setFixedHeight(pixels(points));
}

void View::setBackgroundColor(const Color& color) const {
  PlaneWidget::Layer layer;
  layer.background = nativeColor(color);
  widgetOf<PlaneWidget>(*this).setLayer(layer);
}

void View::addTopCentered(const View& child, double top, double width) const {
  QWidget& parent = widgetOf(*this);
  precondition(parent.layout() == nullptr, "one view hangs in another");
  auto* layout = new QVBoxLayout(&parent);
  layout->setContentsMargins(0, pixels(top), 0, 0);
  widgetOf(child).setFixedWidth(pixels(width));
  layout->addWidget(&widgetOf(child), 0, Qt::AlignHCenter | Qt::AlignTop);
  // In a window on the screen it would else stay hidden until the next events.
  if (parent.isVisible()) widgetOf(child).show();
}

void View::layoutSubtreeIfNeeded() const {
  layOut(*widgetOf(*this).window());
}

std::string View::pngSnapshot() const {
  QByteArray bytes;
  QBuffer buffer(&bytes);
  if (!buffer.open(QIODevice::WriteOnly)) return {};
  if (!widgetOf(*this).grab().save(&buffer, "PNG")) return {};
  return bytes.toStdString();
}

std::string View::description() const {
  const auto& native = widgetOf<NativeView>(*this);
  std::string text(native.kindName());
  const QWidget& widget = widgetOf(*this);
  const QString name =
      widget.accessibleName().isEmpty() ? native.shownText() : widget.accessibleName();
  if (!name.isEmpty()) text += " \"" + name.toStdString() + "\"";
  return text;
}

bool View::operator==(const View& other) const {
  if (native_ == other.native_) return true;
  return native_ && other.native_ && native_->widget && native_->widget == other.native_->widget;
}

}  // namespace vorrin
