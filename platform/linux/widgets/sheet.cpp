#include "platform/linux/widgets/sheet.h"

#include <QBoxLayout>
#include <QLineEdit>
#include <algorithm>

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/button_widgets.h"
#include "platform/linux/widgets/label_widget.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

constexpr int smallestContentWidth = 380;
constexpr int margin = 20;
constexpr int spacing = 12;
constexpr int mostMessageLines = 8;

LabelWidget& wrappingLabel(const std::string& text, const Font& font, const Color& color) {
  auto* label = new LabelWidget(nativeText(text));
  label->setWraps(true);
  label->setFont(nativeFont(font));
  setPaletteColor(*label, QPalette::WindowText, color);
  return *label;
}

}  // namespace

Sheet::Sheet(const Alert& alert, std::optional<int> escapeAnswer, QWidget& window,
             std::function<void(int)> completion)
    : QDialog(&window, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint),
      escapeAnswer_(escapeAnswer),
      completion_(std::move(completion)),
      accessory_(alert.accessory) {
  setWindowModality(Qt::WindowModal);
  setWindowTitle(window.windowTitle());
  setPalette(darkPalette());
  setAccessibleName(nativeText(alert.messageText));
  setAccessibleDescription(nativeText(alert.informativeText));
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(spacing);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  addTexts(alert);
  if (accessory_) {
    auto& field = widgetOf<QLineEdit>(*accessory_);
    layout->addWidget(&field);
    if (field.accessibleName().isEmpty()) field.setAccessibleName(nativeText(alert.messageText));
    field.setFocus();
    field.selectAll();
  }
  addButtons(alert.buttons);
}

void Sheet::addTexts(const Alert& alert) {
  const Font bold{13, FontWeight::semibold, FontFamily::monospacedSystem};
  const Font plain{11, FontWeight::regular, FontFamily::monospacedSystem};
  LabelWidget& message = wrappingLabel(alert.messageText, bold, Color::gray(0.92));
  // Names stand in the message, and they may be endless.
  message.setMaximumNumberOfLines(mostMessageLines);
  texts_ = {&message, &wrappingLabel(alert.informativeText, plain, Color::gray(0.65))};
  for (LabelWidget* text : texts_) layout()->addWidget(text);
}

void Sheet::addButtons(const std::vector<std::string>& titles) {
  auto* row = new QHBoxLayout;
  row->setSpacing(spacing);
  row->addStretch();
  for (std::size_t i = 0; i < titles.size(); ++i) {
    auto* button = new PushButtonWidget(ButtonKind::push, nativeText(titles[i]), Action());
    button->setFont(nativeFont({12, FontWeight::medium, FontFamily::monospacedSystem}));
    button->setAutoDefault(false);
    row->addWidget(button);
    if (i == 0) button->setDefault(true);
    connect(button, &QPushButton::clicked, this, [this, i] { answer(static_cast<int>(i)); });
  }
  static_cast<QVBoxLayout*>(layout())->addLayout(row);
  const int width = std::max(smallestContentWidth, row->sizeHint().width());
  for (LabelWidget* text : texts_) text->setFixedWidth(width);
}

void Sheet::reject() {
  if (escapeAnswer_) answer(*escapeAnswer_);
}

void Sheet::answer(int index) {
  if (!completion_) return;
  const auto completion = std::exchange(completion_, nullptr);
  // The accessory belongs to whoever made it; it must not go down with the sheet.
  if (accessory_) widgetOf(*accessory_).setParent(nullptr);
  hide();
  deleteLater();
  completion(index);
}

void presentSheet(const Alert& alert, std::optional<int> escapeAnswer, WindowWidget& window,
                  std::function<void(int)> completion) {
  if (window.sheet) return;
  // The sheet dies with its window, so the window outlives every answer.
  auto answered = [&window, completion = std::move(completion)](int index) {
    window.sheet.clear();
    completion(index);
  };
  window.sheet = new Sheet(alert, escapeAnswer, window, std::move(answered));
  window.sheet->open();
}

}  // namespace vorrin
