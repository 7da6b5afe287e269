#include "platform/linux/widgets/window_widget.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QMenu>
#include <QScreen>
#include <QShortcut>
#include <QWindow>
#include <algorithm>
#include <string_view>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/widgets/main_menu.h"
#include "platform/linux/widgets/menu_drawing.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/scroll_view.h"
#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/toolkit_connection.h"

namespace vorrin {

namespace {

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
      scrollView_(new ScrollView(this)),
      menuBar_(new QMenuBar(this)) {
  // A menu bar of the desktop's own would have to be asked for over the session bus.
  menuBar_->setNativeMenuBar(false);
  menuBar_->setPalette(darkPalette());
  connect(new QShortcut(Qt::Key_F10, this), &QShortcut::activated, this,
          [this] { openFirstMenu(); });
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setSizeConstraint(QLayout::SetNoConstraint);
  layout->setMenuBar(menuBar_);
  scrollView_->setWidget(contentView);
  layout->addWidget(scrollView_, 0, 0);
  // Else the first button would have the keyboard from the start, and Space would press it.
  contentView->setFocus();
  addMainMenu(*menuBar_);
  menuBar_->setVisible(!menuBar_->actions().isEmpty());
  setContentMinSize(contentMinSize_);
  setContentSize(contentSize);
}

void WindowWidget::setContentSize(QSize size) {
  resize(withMenuBar(size));
}

void WindowWidget::setContentMinSize(QSize size) {
  contentMinSize_ = size;
  // A bar at the side must not make one at the bottom necessary.
  contentView->setMinimumSize((size - QSize(scrollBarExtent, 0)).expandedTo({0, 0}));
  setMinimumSize(withMenuBar(size.expandedTo({0, 0})));
}

void WindowWidget::center() {
  const QRect room = screen()->availableGeometry();
  const QSize whole = size() + frameSize();
  const QPoint corner(std::max(room.x() + (room.width() - whole.width()) / 2, room.x()),
                      std::max(room.y() + (room.height() - whole.height()) / 2, room.y()));
  // Until the window manager has told of the frame, the library's widgets take theirs to have none,
  // and would be put below its title.
  windowHandle() == nullptr ? move(corner) : windowHandle()->setFramePosition(corner);
}

QSize WindowWidget::frameSize() const {
  const QMargins frame = windowHandle() == nullptr ? QMargins() : windowHandle()->frameMargins();
  return {frame.left() + frame.right(), frame.top() + frame.bottom()};
}

void WindowWidget::showOverContent(QWidget& view) {
  static_cast<QGridLayout*>(layout())->addWidget(&view, 0, 0);
  view.show();
  contentView->setEnabled(false);
  view.setFocus();
}

void WindowWidget::askForDarkFrame() {
  xcb_connection_t* const connection = toolkitConnection();
  if (connection == nullptr) return;
  constexpr std::string_view name = "_GTK_THEME_VARIANT";
  constexpr std::string_view type = "UTF8_STRING";
  constexpr std::string_view variant = "dark";
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(winId()),
                      xcbAtom(connection, name), xcbAtom(connection, type), 8,
                      static_cast<std::uint32_t>(variant.size()), variant.data());
}

bool WindowWidget::event(QEvent* event) {
  // Another font or style makes another menu bar.
  if (event->type() == QEvent::ApplicationFontChange || event->type() == QEvent::StyleChange) {
    setContentMinSize(contentMinSize_);
  }
  if (event->type() == QEvent::Show) fitToScreen();
  if (event->type() == QEvent::WindowActivate && !std::exchange(isFramed_, true)) fitToScreen();
  return QWidget::event(event);
}

void WindowWidget::openFirstMenu() {
  QAction* const first = menuBar_->actions().value(0);
  menuBar_->setActiveAction(first);
  if (first != nullptr) first->menu()->setActiveAction(first->menu()->actions().value(0));
}

void WindowWidget::fitToScreen() {
  if (isMaximized() || isFullScreen()) return;
  const QSize room = screen()->availableSize() - frameSize();
  setMinimumSize(minimumSize().boundedTo(room));
  if (size() == size().boundedTo(room)) return;
  resize(size().boundedTo(room));
  center();
}

QSize WindowWidget::withMenuBar(QSize contentSize) const {
  const int bar = menuBar_->isHidden() ? 0 : menuBar_->heightForWidth(contentSize.width());
  return {contentSize.width(), contentSize.height() + std::max(bar, 0)};
}

WindowWidget* firstWindow() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* const window = dynamic_cast<WindowWidget*>(widget)) return window;
  }
  return nullptr;
}

Window::Native::~Native() {
  if (widget) widget->deleteLater();
}

WindowWidget& widgetOf(const Window& window) {
  precondition(window && window.native()->widget, "the window refers to a native window");
  return *window.native()->widget;
}

}  // namespace vorrin
