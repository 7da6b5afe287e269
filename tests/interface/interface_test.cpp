#include "interface_test.h"

#include "bridge/program_engine.h"
#include "detach_engine.h"
#include "platform/fake/system/fake_system.h"
#include "platform/fatal_error.h"

namespace vorrin {

namespace {

void addWithSubviews(const View& view, std::vector<View>& views) {
  views.push_back(view);
  for (const View& subview : view.subviews()) addWithSubviews(subview, views);
}

}  // namespace

InterfaceTest::InterfaceTest() {
  fake::resetSystem();
  driver::forgetStoredSettings();
  test::detachEngine();
  std::filesystem::create_directories(home.path / "Library/Logs");
  launch();
}

InterfaceTest::~InterfaceTest() {
  close();
  test::detachEngine();
  driver::forgetStoredSettings();
}

void InterfaceTest::launch() {
  close();
  app = std::make_shared<App>(std::vector<std::string>{"vorrin"}, nullptr);
  app->applicationDidFinishLaunching();
  driver::activate(app->window);
}

void InterfaceTest::close() {
  if (!app) return;
  engine.stopAll();
  engine.tap.reset();
  if (app->poll) app->poll->invalidate();
  driver::takeAway(app->window);
  app.reset();
  driver::deleteWhatIsLeft();
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

void InterfaceTest::savePreset(const std::string& name, const Preset& preset) {
  precondition(app->presetStore().save(preset, name), "the preset can be saved");
  app->reloadPresets(std::nullopt);
}

void InterfaceTest::store(const std::vector<std::pair<std::string, DefaultsObject>>& values) {
  precondition(!UserDefaults::standard().set(values), "the values can be stored");
}

std::optional<DefaultsObject> InterfaceTest::stored(const std::string& key) {
  return UserDefaults::standard().object(key).value;
}

}  // namespace vorrin
