#include "bridge/program_engine.h"
#include "interface_test.h"
#include "platform/fake/system/fake_system.h"

namespace vorrin {
namespace {

using Lifecycle = InterfaceTest;

TEST_F(Lifecycle, a_start_button_starts_and_stops_its_own_macro_only) {
  click(app->buttons[0]);
  EXPECT_EQ(engine.running, (PerMacro<bool>{true, false}));
  click(app->buttons[1]);
  EXPECT_EQ(engine.running, (PerMacro<bool>{true, true}));
  click(app->buttons[1]);
  EXPECT_EQ(engine.running, (PerMacro<bool>{true, false}));
}

TEST_F(Lifecycle, stop_all_sleep_and_another_session_stop_both) {
  const std::vector<std::function<void()>> ways{[this] { click(button("Stop all · Esc")); },
                                                &fake::sendWillSleep,
                                                &fake::sendSessionDidResignActive};
  for (const auto& stop : ways) {
    click(app->buttons[0]);
    click(app->buttons[1]);
    ASSERT_EQ(engine.running, (PerMacro<bool>{true, true}));
    stop();
    EXPECT_EQ(engine.running, (PerMacro<bool>{false, false}));
    for (const std::size_t macro : {0U, 1U}) EXPECT_EQ(app->states[macro].text(), "OFF");
    EXPECT_EQ(app->buttons[0].title(), "Start");
  }
}

TEST_F(Lifecycle, reopening_brings_a_hidden_or_minimised_window_back) {
  driver::hide(app->window);
  ASSERT_FALSE(driver::isVisible(app->window));
  EXPECT_TRUE(app->applicationShouldHandleReopen(false));
  EXPECT_TRUE(driver::isVisible(app->window));
  driver::minimise(app->window);
  ASSERT_TRUE(waitFor([this] { return driver::isMinimised(app->window); }));
  EXPECT_TRUE(app->applicationShouldHandleReopen(true));
  EXPECT_TRUE(waitFor([this] { return !driver::isMinimised(app->window); }));
  driver::activate(app->window);
}

}  // namespace
}  // namespace vorrin
