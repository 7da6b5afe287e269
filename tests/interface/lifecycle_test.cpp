#include "bridge/program_engine.h"
#include "interface_test.h"
#include "platform/fake/system/fake_system.h"

namespace vorrin {
namespace {

using Lifecycle = InterfaceTest;

TEST_F(Lifecycle, a_start_button_starts_and_stops_its_own_macro_only) {
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
  EXPECT_FALSE(engine.running[1]);
  click(app->buttons[1]);
  EXPECT_TRUE(engine.running[0]);
  EXPECT_TRUE(engine.running[1]);
  click(app->buttons[1]);
  EXPECT_TRUE(engine.running[0]);
  EXPECT_FALSE(engine.running[1]);
}

TEST_F(Lifecycle, stop_all_stops_both) {
  click(app->buttons[0]);
  click(app->buttons[1]);
  click(button("Stop all · Esc"));
  EXPECT_FALSE(engine.running[0]);
  EXPECT_FALSE(engine.running[1]);
  EXPECT_EQ(app->buttons[0].title(), "Start");
}

TEST_F(Lifecycle, sleep_and_another_session_stop_both_and_nothing_starts_again_afterwards) {
  for (void (*const leave)() : {&fake::sendWillSleep, &fake::sendSessionDidResignActive}) {
    click(app->buttons[0]);
    click(app->buttons[1]);
    ASSERT_TRUE(engine.running[0] && engine.running[1]);
    leave();
    for (const std::size_t macro : {0U, 1U}) EXPECT_EQ(app->states[macro].text(), "OFF");
  }
}

TEST_F(Lifecycle, reopening_brings_a_hidden_window_back) {
  driver::hide(app->window);
  ASSERT_FALSE(driver::isVisible(app->window));
  EXPECT_TRUE(app->applicationShouldHandleReopen(false));
  EXPECT_TRUE(driver::isVisible(app->window));
}

TEST_F(Lifecycle, reopening_brings_a_minimised_window_back) {
  driver::minimise(app->window);
  ASSERT_TRUE(waitFor([this] { return driver::isMinimised(app->window); }));
  EXPECT_TRUE(app->applicationShouldHandleReopen(true));
  EXPECT_TRUE(waitFor([this] { return !driver::isMinimised(app->window); }));
  driver::activate(app->window);
}

TEST_F(Lifecycle, a_window_that_was_closed_still_exists) {
  driver::close(app->window);
  EXPECT_FALSE(driver::isVisible(app->window));
  EXPECT_EQ(app->fields[0].text(), "0.05");
  app->window.makeKeyAndOrderFront();
  EXPECT_TRUE(driver::isVisible(app->window));
}

TEST_F(Lifecycle, the_interface_check_gets_a_window_that_is_not_shown_and_no_listener) {
  const auto arguments = std::vector<std::string>{"vorrin", "--ui-test"};
  fake::resetSystem();
  bool checked = false;
  const auto checkedApp = std::make_shared<App>(arguments, [&checked](App& built) {
    checked = true;
    EXPECT_FALSE(driver::isVisible(built.window));
    EXPECT_FALSE(built.poll.has_value());
  });
  checkedApp->applicationDidFinishLaunching();
  EXPECT_TRUE(checked);
  EXPECT_TRUE(fake::system().tapMasks.empty());
  UserDefaults::removePersistentDomain(checkedApp->testSuite);
}

TEST_F(Lifecycle, the_interface_check_leaves_the_users_settings_alone) {
  const auto arguments = std::vector<std::string>{"vorrin", "--ui-test"};
  const auto checkedApp = std::make_shared<App>(arguments, [](App& built) {
    built.fields[0].setText("9");
    built.autoSave();
  });
  checkedApp->applicationDidFinishLaunching();
  EXPECT_EQ(stored("interval0"), std::nullopt);
  EXPECT_EQ(checkedApp->defaults().object("interval0").value, DefaultsObject(9.0));
  UserDefaults::removePersistentDomain(checkedApp->testSuite);
}

}  // namespace
}  // namespace vorrin
