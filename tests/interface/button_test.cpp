#include "platform/button.h"

#include <gtest/gtest.h>

#include <memory>

#include "driver.h"
#include "platform/pop_up_button.h"

namespace vorrin {
namespace {

TEST(Button, a_click_performs_the_action_with_the_button_as_sender) {
  int tag = 0;
  const Button button =
      Button::push("b", {"act", [&tag](const Button& sender) { tag = sender.tag(); }});
  button.setTag(5);
  driver::click(button);
  EXPECT_EQ(tag, 5);
}

TEST(Button, a_disabled_button_performs_nothing) {
  int calls = 0;
  const Button button = Button::push("b", {"act", [&calls](const Button&) { ++calls; }});
  button.setEnabled(false);
  driver::click(button);
  EXPECT_EQ(calls, 0);
  EXPECT_FALSE(button.isEnabled());
}

TEST(Button, a_button_without_an_action_can_be_clicked) {
  const Button button = Button::push("b", {});
  driver::click(button);
  EXPECT_EQ(button.action(), "");
}

TEST(Button, a_title_comes_back_as_it_was_set) {
  const Button button = Button::push("Save & load", {});
  EXPECT_EQ(button.title(), "Save & load");
  button.setTitle("&&");
  EXPECT_EQ(button.title(), "&&");
}

TEST(Button, setting_a_check_box_performs_nothing) {
  int calls = 0;
  const Button check = Button::checkbox("c", {"act", [&calls](const Button&) { ++calls; }});
  check.setOn(true);
  EXPECT_TRUE(check.isOn());
  EXPECT_EQ(calls, 0);
}

TEST(Button, a_click_switches_a_check_box_before_its_action_runs) {
  bool on = false;
  const Button check =
      Button::checkbox("c", {"act", [&on](const Button& sender) { on = sender.isOn(); }});
  driver::click(check);
  EXPECT_TRUE(on);
}

TEST(Button, an_action_may_let_go_of_its_button) {
  auto held = std::make_shared<std::optional<Button>>();
  bool performed = false;
  *held = Button::push("b", {"act", [&performed, held](const Button&) {
                               held->reset();
                               performed = true;
                             }});
  driver::click(**held);
  EXPECT_TRUE(performed);
  driver::deleteWhatIsLeft();
}

TEST(Button, kinds_are_told_apart) {
  EXPECT_EQ(Button::push("", {}).kind(), ButtonKind::push);
  EXPECT_EQ(Button::checkbox("", {}).kind(), ButtonKind::checkbox);
  EXPECT_EQ(PopUpButton::make({}).kind(), ButtonKind::popUp);
}

TEST(Button, an_attributed_title_is_the_title) {
  const Button check = Button::checkbox("", {});
  check.setAttributedTitle("Enable", {13}, Color::sRgb(1, 0, 0));
  EXPECT_EQ(check.title(), "Enable");
}

}  // namespace
}  // namespace vorrin
