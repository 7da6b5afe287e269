#include "ui/app.h"

namespace vorrin {

namespace {
constexpr double rowSpacing = 12;
constexpr double cardInset = 16;
constexpr double columnWidth = 532;
}  // namespace

Action App::action(std::string_view selector, Operation operation) {
  return {selector, [this, operation](const Button&) { (this->*operation)(); }};
}

TextField App::label(const std::string& text, bool bold) {
  TextField made = TextField::wrappingLabel(text);
  made.setFont(bold ? Font{15, FontWeight::semibold} : Font{11, FontWeight::regular});
  return made;
}

StackView App::row(std::span<const View> views) {
  return StackView::make(Orientation::horizontal, rowSpacing, views);
}

StackView App::card(std::span<const View> views) {
  StackView made = StackView::make(Orientation::vertical, rowSpacing, views);
  made.setEdgeInsets(cardInset);
  made.setLayer(Color::gray(0.045), 12, 1, Color::gray(0.13));
  made.setWidth(columnWidth);
  return made;
}

Button App::button(const std::string& title, std::string_view selector, Operation operation) {
  return Button::push(title, action(selector, operation));
}

PopUpButton App::popUp(std::span<const std::string> titles, int selected, const std::string& name) {
  PopUpButton made = PopUpButton::make(action("autoSave", &App::autoSave));
  made.addItems(titles);
  made.selectItem(selected);
  made.setAccessibilityLabel(name);
  return made;
}

}  // namespace vorrin
