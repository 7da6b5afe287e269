#include "interface_test.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QInputMethodEvent>
#include <QLabel>
#include <QTest>
#include <QWindow>
#include <algorithm>

#include "bridge/program_engine.h"
#include "platform/fake/system/fake_system.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

constexpr int patienceMilliseconds = 5000;

void addWithSubviews(const View& view, std::vector<View>& views) {
  views.push_back(view);
  for (const View& subview : view.subviews()) addWithSubviews(subview, views);
}

}  // namespace

bool waitFor(const std::function<bool()>& condition) {
  return QTest::qWaitFor(condition, patienceMilliseconds);
}

void deleteWhatIsLeft() {
  QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

InterfaceTest::InterfaceTest() {
  fake::resetSystem();
  forgetEngine();
  std::filesystem::create_directories(home.path / "Library/Logs");
  launch();
}

InterfaceTest::~InterfaceTest() {
  close();
  forgetEngine();
}

void InterfaceTest::launch() {
  close();
  app = std::make_shared<App>(std::vector<std::string>{"vorrin"}, nullptr);
  app->applicationDidFinishLaunching();
  QWidget& window = widgetOf(app->window);
  window.activateWindow();
  precondition(QTest::qWaitForWindowActive(&window, patienceMilliseconds), "the window is shown");
}

void InterfaceTest::close() {
  if (!app) return;
  engine.stopAll();
  engine.tap.reset();
  if (app->poll) app->poll->invalidate();
  app.reset();
  deleteWhatIsLeft();
}

void InterfaceTest::forgetEngine() {
  engine.changed = nullptr;
  engine.emit = [](int) {};
  engine.permitted = [] { return true; };
  engine.stopAll();
  engine.tap.reset();
  engine.held.clear();
}

std::vector<View> InterfaceTest::allViews() const {
  std::vector<View> views;
  addWithSubviews(app->window.contentView(), views);
  return views;
}

std::vector<View> InterfaceTest::allControls() const {
  std::vector<View> views = allViews();
  std::erase_if(views, [](const View& view) { return !view.isControl(); });
  return views;
}

Button InterfaceTest::button(const std::string& title) const {
  for (const View& view : allViews()) {
    const auto found = Button::from(view);
    if (found && found->kind() == ButtonKind::push && found->title() == title) return *found;
  }
  fatalError("no button \"" + title + "\"");
}

TextField InterfaceTest::label(const std::string& text) const {
  for (const View& view : allViews()) {
    const auto found = TextField::from(view);
    if (found && !found->isEditable() && found->text() == text) return *found;
  }
  fatalError("no label \"" + text + "\"");
}

void InterfaceTest::click(const View& view) {
  click(widgetOf(view));
}

void InterfaceTest::click(QWidget& widget) {
  QWidget& window = *widget.window();
  const QPoint middle = widget.mapTo(&window, widget.rect().center());
  QTest::mouseClick(window.windowHandle(), Qt::LeftButton, {}, middle);
}

void InterfaceTest::press(Qt::Key key, Qt::KeyboardModifiers modifiers) const {
  const QWidget* window = sheet();
  if (window == nullptr) window = &widgetOf(app->window);
  QTest::keyClick(window->windowHandle(), key, modifiers);
}

void InterfaceTest::type(const TextField& field, const std::string& text) const {
  click(field);
  press(Qt::Key_A, Qt::ControlModifier);
  press(Qt::Key_Backspace);
  enter(text);
}

void InterfaceTest::enter(const std::string& text) {
  // An input method hands over whole texts, also those that no key stands for.
  QInputMethodEvent typed;
  typed.setCommitString(QString::fromStdString(text));
  QApplication::sendEvent(QApplication::focusWidget(), &typed);
}

void InterfaceTest::choose(const PopUpButton& popUp, int item) {
  auto& widget = widgetOf<QComboBox>(popUp);
  click(widget);
  QAbstractItemView& list = *widget.view();
  precondition(waitFor([&list] { return list.isVisible(); }), "the pop-up opens");
  const QModelIndex index = list.model()->index(item, 0);
  const QPoint place = list.viewport()->mapTo(list.window(), list.visualRect(index).center());
  QTest::mouseMove(list.window()->windowHandle(), place);
  QTest::mouseClick(list.window()->windowHandle(), Qt::LeftButton, {}, place);
  precondition(waitFor([&list] { return !list.isVisible(); }), "the pop-up closes");
}

Sheet* InterfaceTest::sheet() const {
  return static_cast<Sheet*>(widgetOf(app->window).sheet.data());
}

QPushButton* InterfaceTest::sheetButton(const std::string& title) const {
  precondition(sheet() != nullptr, "a sheet is shown");
  for (QPushButton* candidate : sheet()->findChildren<QPushButton*>()) {
    if (candidate->text().toStdString() == title) return candidate;
  }
  return nullptr;
}

std::vector<std::string> InterfaceTest::sheetTexts() const {
  precondition(sheet() != nullptr, "a sheet is shown");
  std::vector<std::string> texts;
  for (const QLabel* text : sheet()->findChildren<QLabel*>()) {
    texts.push_back(text->text().toStdString());
  }
  return texts;
}

std::vector<std::string> InterfaceTest::sheetButtons() const {
  precondition(sheet() != nullptr, "a sheet is shown");
  std::vector<std::string> titles;
  for (const QPushButton* shown : sheet()->findChildren<QPushButton*>()) {
    titles.push_back(shown->text().toStdString());
  }
  return titles;
}

void InterfaceTest::answer(const std::string& title) const {
  precondition(QTest::qWaitForWindowActive(sheet(), patienceMilliseconds), "the sheet is shown");
  QPushButton* chosen = sheetButton(title);
  precondition(chosen != nullptr, "the sheet has a button \"" + title + "\"");
  click(*chosen);
}

void InterfaceTest::savePreset(const std::string& name, const Preset& preset) {
  precondition(app->presetStore().save(preset, name), "the preset can be saved");
  app->reloadPresets(std::nullopt);
}

std::optional<DefaultsObject> InterfaceTest::stored(const std::string& key) {
  return UserDefaults::standard().object(key);
}

}  // namespace vorrin
