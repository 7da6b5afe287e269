#include "platform/window.h"

#include <cmath>

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/window_activation.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

QSize pixels(Size size) {
  return {static_cast<int>(std::lround(size.width)), static_cast<int>(std::lround(size.height))};
}

}  // namespace

Window Window::make(Size contentSize, std::uint32_t styleMask) {
  return Window(std::make_shared<Native>(*new WindowWidget(pixels(contentSize), styleMask)));
}

void Window::setTitle(const std::string& title) const {
  widgetOf(*this).setWindowTitle(nativeText(title));
}

void Window::center() const {
  widgetOf(*this).center();
}

std::uint32_t Window::styleMask() const {
  return widgetOf(*this).styleMask;
}

std::uint32_t Window::collectionBehavior() const {
  return widgetOf(*this).collectionBehavior;
}

void Window::setCollectionBehavior(std::uint32_t behavior) const {
  widgetOf(*this).collectionBehavior = behavior;
}

void Window::setContentMinSize(Size size) const {
  widgetOf(*this).setContentMinSize(pixels(size));
}

void Window::setContentSize(Size size) const {
  widgetOf(*this).setContentSize(pixels(size));
}

void Window::setBackgroundColor(const Color& color) const {
  WindowWidget& window = widgetOf(*this);
  window.backgroundColor = color;
  setPaletteColor(window, QPalette::Window, color);
}

Color Window::backgroundColor() const {
  return widgetOf(*this).backgroundColor;
}

void Window::setDarkAppearance() const {
  // Everything inside the frame is dark from the start.
  widgetOf(*this).askForDarkFrame();
}

View Window::contentView() const {
  return viewOf(*widgetOf(*this).contentView);
}

void Window::toggleFullScreen() const {
  WindowWidget& window = widgetOf(*this);
  if ((window.collectionBehavior & window_collection_behavior::fullScreenPrimary) == 0) return;
  // The other state bits stay, so that leaving gives a maximised window its state back.
  window.setWindowState(window.windowState() ^ Qt::WindowFullScreen);
}

void Window::orderFront() const {
  widgetOf(*this).show();
}

void Window::makeKeyAndOrderFront() const {
  bringToFront(widgetOf(*this));
}

}  // namespace vorrin
