#include "platform/linux/widgets/window_widget.h"

#include <QDialog>
#include <QEvent>
#include <QGuiApplication>
#include <QVBoxLayout>
#include <algorithm>
#include <string_view>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/widgets/main_menu.h"
#include "platform/linux/widgets/palette.h"

namespace vorrin {

namespace {

std::vector<WindowWidget*>& livingWindows() {
  static std::vector<WindowWidget*> living;
  return living;
}

Qt::WindowFlags flags(std::uint32_t style) {
  Qt::WindowFlags flags = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowSystemMenuHint;
  if ((style & window_style::titled) != 0) flags |= Qt::WindowTitleHint;
  if ((style & window_style::closable) != 0) flags |= Qt::WindowCloseButtonHint;
  if ((style & window_style::miniaturizable) != 0) flags |= Qt::WindowMinimizeButtonHint;
  if ((style & window_style::resizable) != 0) {
    flags |= Qt::WindowMaximizeButtonHint | Qt::WindowFullscreenButtonHint;
  }
  return flags;
}

}  // namespace

WindowWidget::WindowWidget(QSize contentSize, std::uint32_t style)
    : QWidget(nullptr, flags(style)),
      styleMask(style),
      contentView(new PlaneWidget("Content view")),
      menuBar_(new QMenuBar(this)) {
  // A menu bar of the desktop's own would have to be asked for over the session bus.
  menuBar_->setNativeMenuBar(false);
  menuBar_->setPalette(darkPalette());
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setSizeConstraint(QLayout::SetNoConstraint);
  layout->setMenuBar(menuBar_);
  layout->addWidget(contentView);
  // Else the first button would have the keyboard from the start, and Space would press it.
  contentView->setFocus();
  livingWindows().push_back(this);
  showMainMenu();
  setContentSize(contentSize);
}

WindowWidget::~WindowWidget() {
  std::erase(livingWindows(), this);
}

void WindowWidget::showMainMenu() {
  menuBar_->clear();
  addMainMenu(*menuBar_);
  menuBar_->setVisible(!menuBar_->actions().isEmpty());
  setContentMinSize(contentMinSize_);
}

void WindowWidget::setContentSize(QSize size) {
  resize(withMenuBar(size));
}

void WindowWidget::setContentMinSize(QSize size) {
  contentMinSize_ = size;
  setMinimumSize(withMenuBar(size.expandedTo({0, 0})));
}

void WindowWidget::askForDarkFrame() {
  const auto* x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The offscreen platform answers as X11 does, without a connection.
  if (x11 == nullptr || x11->connection() == nullptr) return;
  constexpr std::string_view name = "_GTK_THEME_VARIANT";
  constexpr std::string_view type = "UTF8_STRING";
  constexpr std::string_view variant = "dark";
  xcb_connection_t* const connection = x11->connection();
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(winId()),
                      xcbAtom(connection, name), xcbAtom(connection, type), 8,
                      static_cast<std::uint32_t>(variant.size()), variant.data());
}

bool WindowWidget::event(QEvent* event) {
  // Another font or style makes another menu bar.
  if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::StyleChange) {
    setContentMinSize(contentMinSize_);
  }
  return QWidget::event(event);
}

QSize WindowWidget::withMenuBar(QSize contentSize) const {
  const int bar = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(contentSize.width());
  return {contentSize.width(), contentSize.height() + std::max(bar, 0)};
}

const std::vector<WindowWidget*>& windows() {
  return livingWindows();
}

Window::Native::~Native() {
  if (widget) widget->deleteLater();
}

WindowWidget& widgetOf(const Window& window) {
  precondition(window && window.native()->widget, "the window refers to a native window");
  return *window.native()->widget;
}

}  // namespace vorrin
