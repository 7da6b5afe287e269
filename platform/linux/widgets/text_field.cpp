#include "platform/text_field.h"

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/field_widget.h"
#include "platform/linux/widgets/label_widget.h"
#include "platform/linux/widgets/palette.h"

namespace vorrin {

TextField TextField::wrappingLabel(const std::string& text) {
  return TextField(nativeOf(*new LabelWidget(nativeText(text))));
}

TextField TextField::field(const std::string& text) {
  return TextField(nativeOf(*new FieldWidget(nativeText(text))));
}

std::optional<TextField> TextField::from(const View& view) {
  if (widgetAs<LabelWidget>(view) == nullptr && widgetAs<FieldWidget>(view) == nullptr) return {};
  return TextField(view.native());
}

std::string TextField::text() const {
  return widgetOf<NativeView>(*this).shownText().toStdString();
}

void TextField::setText(const std::string& text) const {
  if (auto* label = widgetAs<LabelWidget>(*this)) {
    label->showText(nativeText(text));
  } else {
    widgetOf<FieldWidget>(*this).showText(nativeText(text));
  }
}

bool TextField::isEditable() const {
  return widgetAs<FieldWidget>(*this) != nullptr;
}

void TextField::setTextColor(const Color& color) const {
  widgetOf<NativeView>(*this).textColor = color;
  setPaletteColor(widgetOf(*this), isEditable() ? QPalette::Text : QPalette::WindowText, color);
}

Color TextField::textColor() const {
  return widgetOf<NativeView>(*this).textColor;
}

void TextField::setMaximumNumberOfLines(int lines) const {
  widgetOf<LabelWidget>(*this).setMaximumNumberOfLines(lines);
}

void TextField::setPlaceholder(const std::string& text) const {
  widgetOf<FieldWidget>(*this).setPlaceholderText(nativeText(text));
}

void TextField::setRoundedBezel(const Color& background) const {
  // Every field is drawn with the round bezel; its plane is what can be chosen.
  setPaletteColor(widgetOf<FieldWidget>(*this), QPalette::Base, background);
}

void TextField::setDelegate(TextFieldDelegate delegate) const {
  widgetOf<FieldWidget>(*this).delegate = std::move(delegate);
}

const void* TextField::delegate() const {
  return widgetOf<FieldWidget>(*this).delegate.object;
}

}  // namespace vorrin
