#include <tuple>

#include "bridge/program_engine.h"
#include "interface_test.h"
#include "platform/fake/system/fake_system.h"
#include "ui/theme.h"

namespace vorrin {
namespace {

using Refresh = InterfaceTest;

/// Both macros, each with the other at rest.
class RefreshOfMacro : public InterfaceTest, public testing::WithParamInterface<int> {
 protected:
  [[nodiscard]] const TextField& state() const { return app->states[index()]; }
  [[nodiscard]] const Button& startButton() const { return app->buttons[index()]; }
  [[nodiscard]] std::size_t index() const { return static_cast<std::size_t>(GetParam()); }
};
INSTANTIATE_TEST_SUITE_P(both, RefreshOfMacro, testing::Values(0, 1));

TEST_P(RefreshOfMacro, a_stopped_macro_shows_off_and_start) {
  for (const bool active : {false, true}) {
    fake::setApplicationActive(active);
    EXPECT_EQ(state().text(), "OFF");
    EXPECT_EQ(state().textColor(), dimGreen);
    EXPECT_EQ(startButton().title(), "Start");
    EXPECT_TRUE(startButton().isEnabled());
  }
}

TEST_P(RefreshOfMacro, a_running_macro_shows_running_and_stop) {
  click(startButton());
  EXPECT_EQ(state().text(), "RUNNING");
  EXPECT_EQ(state().textColor(), hackerGreen);
  EXPECT_EQ(startButton().title(), "Stop");
  EXPECT_TRUE(startButton().isEnabled());
  EXPECT_EQ(app->states[1 - index()].text(), "OFF");
}

TEST_P(RefreshOfMacro, a_running_macro_shows_paused_while_the_window_has_the_keyboard) {
  click(startButton());
  fake::setApplicationActive(true);
  EXPECT_EQ(state().text(), "PAUSED · app focused");
  EXPECT_EQ(state().textColor(), hackerGreen);
  EXPECT_EQ(startButton().title(), "Stop");
  EXPECT_TRUE(startButton().isEnabled());
  fake::setApplicationActive(false);
  EXPECT_EQ(state().text(), "RUNNING");
}

TEST_P(RefreshOfMacro, the_button_is_enabled_when_ready_and_enabled_and_valid) {
  for (const bool ready : {true, false}) {
    for (const bool enabled : {true, false}) {
      for (const bool valid : {true, false}) {
        fake::system().trusted = ready;
        engine.enabled[GetParam()] = enabled;
        app->settingsValid = valid;
        app->refresh();
        EXPECT_EQ(startButton().isEnabled(), ready && enabled && valid)
            << ready << enabled << valid;
      }
    }
  }
}

TEST_P(RefreshOfMacro, screen_readers_hear_which_macro_the_button_starts_or_stops) {
  const std::string macro = GetParam() == 0 ? "keyboard repeat" : "left mouse click";
  EXPECT_EQ(driver::spokenName(startButton()), "Start " + macro);
  click(startButton());
  EXPECT_EQ(driver::spokenName(startButton()), "Stop " + macro);
}

const std::string connected = "Connected · settings persist · starts OFF on every launch";
const std::string needed =
    "Permission needed: enable Vorrin in Accessibility. Connection retries automatically.";
const std::string reopen =
    "Accessibility granted, but keyboard listener unavailable. Quit and reopen the app.";

TEST_F(Refresh, the_status_says_what_permission_and_tap_allow) {
  for (const auto& [trusted, refuses, text] :
       {std::tuple(true, false, connected), {false, false, needed}, {true, true, reopen}}) {
    fake::system().trusted = trusted;
    fake::system().refusesTaps = refuses;
    launch();
    EXPECT_EQ(app->status.text(), text);
    EXPECT_EQ(app->status.textColor(), text == connected ? dimGreen : hackerGreen);
    for (const std::size_t macro : {0U, 1U}) {
      EXPECT_EQ(app->buttons[macro].isEnabled(), text == connected);
      EXPECT_EQ(app->states[macro].text(), "OFF");
    }
  }
}

TEST_F(Refresh, with_the_permission_withdrawn_the_status_asks_for_it) {
  fake::system().trusted = false;
  app->refresh();
  EXPECT_EQ(app->status.text(), needed);
  EXPECT_EQ(app->status.textColor(), hackerGreen);
}

TEST_F(Refresh, retry_connection_connects_once_the_permission_is_given) {
  fake::system().trusted = false;
  launch();
  fake::system().trusted = true;
  click(button("Retry connection"));
  EXPECT_EQ(app->status.text(), connected);
  EXPECT_TRUE(app->buttons[0].isEnabled());
}

TEST_F(Refresh, the_connection_comes_by_itself_soon_after_the_permission_is_given) {
  fake::system().trusted = false;
  launch();
  fake::system().trusted = true;
  EXPECT_TRUE(waitFor([this] { return app->status.text() == connected; }));
}

TEST_F(Refresh, the_button_for_the_settings_opens_them) {
  click(button("Open Accessibility Settings"));
  EXPECT_EQ(fake::system().settingsOpenings, 1U);
}

}  // namespace
}  // namespace vorrin
