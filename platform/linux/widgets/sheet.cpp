#include "platform/linux/widgets/sheet.h"

#include <QBoxLayout>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <utility>

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/button_widgets.h"
#include "platform/linux/widgets/label_widget.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

constexpr int usualContentWidth = 380;
constexpr int margin = 20;
constexpr int spacing = 12;
constexpr int roomAround = 12;
constexpr int mostMessageLines = 8;
constexpr Color dimming{0, 0, 0, 0.45};
constexpr Color destructiveTitle = Color::sRgb(1, 0.49, 0.45);

LabelWidget& wrappingLabel(const std::string& text, const Font& font, const Color& color) {
  auto* label = new LabelWidget(nativeText(text));
  label->setWraps(true);
  label->setFont(nativeFont(font));
  setPaletteColor(*label, QPalette::WindowText, color);
  return *label;
}

}  // namespace

Sheet::Sheet(const Alert& alert, WindowWidget& window, std::function<void(int)> completion)
    : ScrollView(&window),
      window_(window),
      completion_(std::move(completion)),
      accessory_(alert.accessory),
      panel_(new PlaneWidget("Sheet")),
      formerFocus_(window.focusWidget()) {
  setPaletteColor(*this, QPalette::Window, dimming);
  setAutoFillBackground(true);
  setAccessibleName(nativeText(alert.messageText));
  setAccessibleDescription(nativeText(alert.informativeText));
  auto* ground = new QWidget;
  auto* around = new QHBoxLayout(ground);
  around->setContentsMargins(roomAround, 2 * roomAround, roomAround, roomAround);
  around->addStretch();
  around->addWidget(panel_, 1, Qt::AlignTop);
  around->addStretch();
  panel_->setPalette(darkPalette());
  panel_->setLayer({nativeColor(Color::gray(0.09)), 12, 1, nativeColor(Color::gray(0.24))});
  auto* layout = new QVBoxLayout(panel_);
  layout->setContentsMargins(margin, margin, margin, margin);
  layout->setSpacing(spacing);
  addTexts(alert);
  addAccessory(alert);
  addButtons(alert);
  // As wide as a field is, which then is as wide as the texts; less where the window is narrower.
  const int needed = layout->minimumSize().width();
  panel_->setMaximumWidth(accessory_ ? needed : std::max(needed, usualContentWidth + 2 * margin));
  panel_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  setWidget(ground);
  ground->setAutoFillBackground(false);
}

void Sheet::addTexts(const Alert& alert) {
  const Font bold{13, FontWeight::semibold, FontFamily::monospacedSystem};
  const Font plain{11, FontWeight::regular, FontFamily::monospacedSystem};
  LabelWidget& message = wrappingLabel(alert.messageText, bold, Color::gray(0.92));
  // Names stand in the message, and they may be endless.
  message.setMaximumNumberOfLines(mostMessageLines);
  panel_->layout()->addWidget(&message);
  panel_->layout()->addWidget(&wrappingLabel(alert.informativeText, plain, Color::gray(0.65)));
}

void Sheet::addAccessory(const Alert& alert) {
  if (!accessory_) return;
  auto& field = widgetOf<QLineEdit>(*accessory_);
  panel_->layout()->addWidget(&field);
  if (field.accessibleName().isEmpty()) field.setAccessibleName(nativeText(alert.messageText));
  // All of it, seen from its beginning.
  field.end(false);
  field.home(true);
  setFocusProxy(&field);
}

void Sheet::addButtons(const Alert& alert) {
  auto* row = new QHBoxLayout;
  row->setSpacing(spacing);
  row->addStretch();
  for (std::size_t i = 0; i < alert.buttons.size(); ++i) {
    const int index = static_cast<int>(i);
    auto* button = new PushButtonWidget(ButtonKind::push, nativeText(alert.buttons[i]), Action());
    button->setFont(nativeFont({12, FontWeight::medium, FontFamily::monospacedSystem}));
    if (alert.destructiveButton == index) {
      setPaletteColor(*button, QPalette::ButtonText, destructiveTitle);
    }
    row->addWidget(button);
    if (i == 0) default_ = button;
    if (alert.buttons[i] == "Cancel" || alert.buttons[i] == "Close") escape_ = button;
    connect(button, &QPushButton::clicked, this, [this, index] { answer(index); });
  }
  if (default_ != nullptr) default_->setDefault(true);
  if (!accessory_) setFocusProxy(default_);
  static_cast<QVBoxLayout*>(panel_->layout())->addLayout(row);
}

void Sheet::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape) {
    if (escape_ != nullptr) escape_->click();
  } else if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    ScrollView::keyPressEvent(event);
  } else if (default_ != nullptr && !event->isAutoRepeat()) {
    default_->click();
  }
}

void Sheet::answer(int index) {
  if (!completion_) return;
  const auto completion = std::exchange(completion_, nullptr);
  // The accessory belongs to whoever made it; it must not go down with the sheet.
  if (accessory_) widgetOf(*accessory_).setParent(nullptr);
  window_.contentView->setEnabled(true);
  if (formerFocus_) formerFocus_->setFocus();
  hide();
  deleteLater();
  completion(index);
}

void presentSheet(const Alert& alert, WindowWidget& window, std::function<void(int)> completion) {
  if (window.sheet) return;
  // The sheet dies with its window, so the window outlives every answer.
  auto answered = [&window, completion = std::move(completion)](int index) {
    window.sheet.clear();
    completion(index);
  };
  window.sheet = new Sheet(alert, window, std::move(answered));
  window.showOverContent(*window.sheet);
}

void beginSheet(const Alert& alert, const Window& window, std::function<void(int)> completion) {
  presentSheet(alert, widgetOf(window), std::move(completion));
}

}  // namespace vorrin
