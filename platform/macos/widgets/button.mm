#include "platform/button.h"

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/action_target.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/title_color.h"
#include "platform/macos/widgets/view_native.h"

namespace vorrin {

namespace {

NSButton* nsButton(const Button& button) {
  return nsViewAs<NSButton>(button);
}

}  // namespace

Button Button::push(const std::string& title, Action action) {
  NSButton* button = [NSButton buttonWithTitle:nsString(title) target:nil action:nil];
  button.bezelStyle = NSBezelStyleRounded;
  connectAction(button, action);
  return Button(nativeOf(button));
}

Button Button::checkbox(const std::string& title, Action action) {
  NSButton* button = [NSButton checkboxWithTitle:nsString(title) target:nil action:nil];
  // Draws nothing on a check box; `kind` tells it from a push button by this.
  button.bezelStyle = NSBezelStyleRegularSquare;
  connectAction(button, action);
  return Button(nativeOf(button));
}

std::optional<Button> Button::from(const View& view) {
  if (!view || ![nsView(view) isKindOfClass:NSButton.class]) return std::nullopt;
  return Button(view.native());
}

ButtonKind Button::kind() const {
  NSButton* button = nsButton(*this);
  if ([button isKindOfClass:NSPopUpButton.class]) return ButtonKind::popUp;
  return button.bezelStyle == NSBezelStyleRounded ? ButtonKind::push : ButtonKind::checkbox;
}

std::string Button::title() const {
  return standardString(nsButton(*this).title);
}

void Button::setTitle(const std::string& title) const {
  NSButton* button = nsButton(*this);
  NSString* shown = nsString(title);
  if ([button.title isEqualToString:shown]) return;
  button.title = shown;
  colorTitle(button);
}

void Button::setAttributedTitle(const std::string& title, const Font& font,
                                const Color& color) const {
  nsButton(*this).attributedTitle =
      [[NSAttributedString alloc] initWithString:nsString(title)
                                      attributes:@{
                                        NSFontAttributeName : nsFont(font),
                                        NSForegroundColorAttributeName : nsColor(color)
                                      }];
}

void Button::setTag(int tag) const {
  nsButton(*this).tag = tag;
}

int Button::tag() const {
  return static_cast<int>(nsButton(*this).tag);
}

bool Button::isOn() const {
  return nsButton(*this).state == NSControlStateValueOn;
}

void Button::setOn(bool on) const {
  nsButton(*this).state = on ? NSControlStateValueOn : NSControlStateValueOff;
}

void Button::setContentTintColor(const Color& color) const {
  nsButton(*this).contentTintColor = nsColor(color);
  colorTitle(nsButton(*this));
}

void Button::setBezelColor(const Color& color) const {
  nsButton(*this).bezelColor = nsColor(color);
}

void Button::setRegularControlSize() const {
  nsButton(*this).controlSize = NSControlSizeRegular;
}

std::string_view Button::action() const {
  const Action* action = connectedAction(nsButton(*this));
  return action == nullptr ? std::string_view() : action->selector;
}

}  // namespace vorrin
