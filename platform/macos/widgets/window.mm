#include "platform/window.h"

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"

namespace vorrin {

// The seam's numbers are AppKit's own, so that translating is a cast.
static_assert(window_style::titled == NSWindowStyleMaskTitled);
static_assert(window_style::closable == NSWindowStyleMaskClosable);
static_assert(window_style::miniaturizable == NSWindowStyleMaskMiniaturizable);
static_assert(window_style::resizable == NSWindowStyleMaskResizable);
static_assert(window_collection_behavior::fullScreenPrimary ==
              NSWindowCollectionBehaviorFullScreenPrimary);

Window Window::make(Size contentSize, std::uint32_t styleMask) {
  NSWindow* window =
      [[NSWindow alloc] initWithContentRect:NSMakeRect(0, 0, contentSize.width, contentSize.height)
                                  styleMask:styleMask
                                    backing:NSBackingStoreBuffered
                                      defer:NO];
  window.releasedWhenClosed = NO;
  return Window(std::make_shared<Native>(Native{window}));
}

void Window::setTitle(const std::string& title) const {
  native_->window.title = nsString(title);
}

void Window::center() const {
  [native_->window center];
}

std::uint32_t Window::styleMask() const {
  return static_cast<std::uint32_t>(native_->window.styleMask);
}

std::uint32_t Window::collectionBehavior() const {
  return static_cast<std::uint32_t>(native_->window.collectionBehavior);
}

void Window::setCollectionBehavior(std::uint32_t behavior) const {
  native_->window.collectionBehavior = behavior;
}

void Window::setContentMinSize(Size size) const {
  native_->window.contentMinSize = NSMakeSize(size.width, size.height);
}

void Window::setContentSize(Size size) const {
  [native_->window setContentSize:NSMakeSize(size.width, size.height)];
}

void Window::setBackgroundColor(const Color& color) const {
  native_->window.backgroundColor = nsColor(color);
}

Color Window::backgroundColor() const {
  return colorOf(native_->window.backgroundColor);
}

void Window::setDarkAppearance() const {
  native_->window.appearance = [NSAppearance appearanceNamed:NSAppearanceNameDarkAqua];
  native_->window.titlebarAppearsTransparent = YES;
}

View Window::contentView() const {
  return viewOf(native_->window.contentView);
}

void Window::toggleFullScreen() const {
  [native_->window toggleFullScreen:nil];
}

void Window::orderFront() const {
  [native_->window orderFront:nil];
}

void Window::makeKeyAndOrderFront() const {
  if (native_->window.miniaturized) [native_->window deminiaturize:nil];
  [native_->window makeKeyAndOrderFront:nil];
  // Since macOS 14 a program may not make itself the active one, and the windows of one that is not
  // come up behind those of the one that is.
  [native_->window orderFrontRegardless];
}

}  // namespace vorrin
