#include "driver.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTest>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <fstream>

#include "qt_driver.h"

namespace vorrin::driver {

namespace {

constexpr int patienceMilliseconds = 5000;

/// As an input method does, which hands over whole texts, also those that no key stands for.
void commit(QWidget& widget, const std::string& text) {
  QInputMethodEvent typed;
  typed.setCommitString(QString::fromStdString(text));
  QApplication::sendEvent(&widget, &typed);
}

template <typename Kind>
std::vector<std::string> textsOf(const Sheet& sheet) {
  std::vector<std::string> texts;
  for (const Kind* widget : sheet.findChildren<Kind*>()) {
    texts.push_back(widget->text().toStdString());
  }
  return texts;
}

}  // namespace

void prepareEnvironment(const std::filesystem::path& home) {
  const std::filesystem::path screen = home / "screen.json";
  std::ofstream(screen) << R"({"screens": [{"name": "large", "x": 0, "y": 0, "width": 2880,
      "height": 1800, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
  setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screen.string()).c_str(), 1);
  setenv("XDG_RUNTIME_DIR", home.c_str(), 1);
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
}

void applicationWasMade() {
  // A pop-up takes no choice for as long as a click may still be half of a double click.
  QApplication::setDoubleClickInterval(1);
}

void forgetStoredSettings() {
  // They lie in the home directory.
}

bool waitFor(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, patienceMilliseconds);
}

void deleteWhatIsLeft() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void activate(const Window& window) {
  QWidget& widget = widgetOf(window);
  widget.activateWindow();
  precondition(QTest::qWaitForWindowActive(&widget, patienceMilliseconds), "the window is shown");
}

void hide(const Window& window) {
  widgetOf(window).hide();
}

void resize(const Window& window, Size size) {
  window.setContentSize(size);
}

void minimise(const Window& window) {
  widgetOf(window).showMinimized();
}

void takeAway(const Window& /*window*/) {
  // It goes with its last value, and its sheet with it.
}

bool isVisible(const Window& window) {
  return widgetOf(window).isVisible();
}

bool isMinimised(const Window& window) {
  return widgetOf(window).isMinimized();
}

void click(const View& view) {
  click(widgetOf(view));
}

void click(QWidget& widget) {
  QWindow* const window = widget.window()->windowHandle();
  if (window == nullptr) {
    QTest::mouseClick(&widget, Qt::LeftButton);
  } else {
    click(*window, widget.mapTo(widget.window(), widget.rect().center()));
  }
}

void click(QWindow& window, QPoint place) {
  QTest::lastMouseTimestamp = monotonicMilliseconds() + 1000;
  QTest::mouseClick(&window, Qt::LeftButton, {}, place);
}

int monotonicMilliseconds() {
  using namespace std::chrono;
  return static_cast<int>(
      duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
}

void enter(const Window& /*window*/, const std::string& text) {
  commit(*QApplication::focusWidget(), text);
}

void type(const TextField& field, const std::string& text) {
  auto& widget = widgetOf<QLineEdit>(field);
  click(widget);
  QTest::keyClick(widget.window()->windowHandle(), Qt::Key_A, Qt::ControlModifier);
  QTest::keyClick(widget.window()->windowHandle(), Qt::Key_Backspace);
  commit(widget, text);
}

void choose(const PopUpButton& popUp, int item) {
  auto& widget = widgetOf<QComboBox>(popUp);
  click(widget);
  QAbstractItemView& list = *widget.view();
  precondition(waitFor([&list] { return list.isVisible(); }), "the pop-up opens");
  const QModelIndex index = list.model()->index(item, 0);
  const QPoint place = list.viewport()->mapTo(list.window(), list.visualRect(index).center());
  QTest::mouseMove(list.window()->windowHandle(), place);
  click(*list.window()->windowHandle(), place);
  precondition(waitFor([&list] { return !list.isVisible(); }), "the pop-up closes");
}

std::vector<std::string> titles(const PopUpButton& popUp) {
  const auto& widget = widgetOf<QComboBox>(popUp);
  std::vector<std::string> titles;
  for (int i = 0; i < widget.count(); ++i) titles.push_back(widget.itemText(i).toStdString());
  return titles;
}

std::string spokenName(const View& view) {
  const QString name = widgetOf(view).accessibleName();
  return (name.isEmpty() ? widgetOf<NativeView>(view).shownText() : name).toStdString();
}

Rect place(const View& view, const View& root) {
  return view.boundsIn(root);
}

bool hasKeyboard(const TextField& field) {
  return widgetOf(field).hasFocus();
}

std::string selectedText(const TextField& field) {
  return widgetOf<QLineEdit>(field).selectedText().toStdString();
}

Sheet* sheetOf(const Window& window) {
  return widgetOf(window).sheet;
}

Sheet& shownSheet(const Window& window) {
  Sheet* sheet = sheetOf(window);
  precondition(sheet != nullptr, "a sheet is shown");
  return *sheet;
}

QPushButton& sheetButton(const Window& window, const std::string& title) {
  const auto buttons = shownSheet(window).findChildren<QPushButton*>();
  const auto found = std::find_if(
      buttons.begin(), buttons.end(),
      [&title](const QPushButton* button) { return button->text().toStdString() == title; });
  precondition(found != buttons.end(), "the sheet has a button \"" + title + "\"");
  return **found;
}

bool hasSheet(const Window& window) {
  return sheetOf(window) != nullptr;
}

void pressInSheet(const Window& window, Key key) {
  QTest::keyClick(shownSheet(window).window()->windowHandle(),
                  key == Key::enter ? Qt::Key_Return : Qt::Key_Escape);
}

void answer(const Window& window, const std::string& title) {
  click(sheetButton(window, title));
}

std::vector<std::string> sheetTexts(const Window& window) {
  return textsOf<QLabel>(shownSheet(window));
}

std::vector<std::string> sheetButtons(const Window& window) {
  return textsOf<QPushButton>(shownSheet(window));
}

std::string defaultSheetButton(const Window& window) {
  for (const QPushButton* button : shownSheet(window).findChildren<QPushButton*>()) {
    if (button->isDefault()) return button->text().toStdString();
  }
  return {};
}

TextField sheetField(const Window& window) {
  auto* widget = shownSheet(window).findChild<QLineEdit*>();
  precondition(widget != nullptr, "the sheet has a field");
  return *TextField::from(viewOf(*widget));
}

}  // namespace vorrin::driver
