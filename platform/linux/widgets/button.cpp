#include "platform/button.h"

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/button_widgets.h"
#include "platform/linux/widgets/palette.h"

namespace vorrin {

namespace {

QPalette::ColorRole titleRole(const Button& button) {
  return button.kind() == ButtonKind::checkbox ? QPalette::WindowText : QPalette::ButtonText;
}

}  // namespace

Button Button::push(const std::string& title, Action action) {
  return Button(
      nativeOf(*new PushButtonWidget(ButtonKind::push, nativeText(title), std::move(action))));
}

Button Button::checkbox(const std::string& title, Action action) {
  return Button(
      nativeOf(*new CheckBoxWidget(ButtonKind::checkbox, nativeText(title), std::move(action))));
}

std::optional<Button> Button::from(const View& view) {
  if (widgetAs<NativeButton>(view) == nullptr) return {};
  return Button(view.native());
}

ButtonKind Button::kind() const {
  return widgetOf<NativeButton>(*this).kind;
}

std::string Button::title() const {
  return widgetOf<NativeButton>(*this).shownText().toStdString();
}

void Button::setTitle(const std::string& title) const {
  widgetOf<NativeButton>(*this).setTitle(nativeText(title));
}

void Button::setAttributedTitle(const std::string& title, const Font& font,
                                const Color& color) const {
  setTitle(title);
  setFont(font);
  setPaletteColor(widgetOf(*this), titleRole(*this), color);
}

void Button::setTag(int tag) const {
  widgetOf<NativeButton>(*this).tag = tag;
}

int Button::tag() const {
  return widgetOf<NativeButton>(*this).tag;
}

bool Button::isOn() const {
  const auto* checkbox = widgetAs<CheckBoxWidget>(*this);
  return checkbox != nullptr && checkbox->isChecked();
}

void Button::setOn(bool on) const {
  widgetOf<CheckBoxWidget>(*this).setChecked(on);
}

void Button::setContentTintColor(const Color& color) const {
  setPaletteColor(widgetOf(*this), titleRole(*this), color);
}

void Button::setBezelColor(const Color& color) const {
  setPaletteColor(widgetOf(*this), QPalette::Button, color);
}

void Button::setRegularControlSize() const {
  // The style knows one height of push buttons, which is the regular one.
  precondition(kind() == ButtonKind::push, "the button is a push button");
}

std::string_view Button::action() const {
  return widgetOf<NativeButton>(*this).action.selector;
}

}  // namespace vorrin
