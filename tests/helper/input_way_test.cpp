#include "platform/linux/input/input_way.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

TEST(InputWay, an_x11_session_uses_the_x_server) {
  EXPECT_EQ(chooseInput({.sessionType = "x11", .display = ":0"}).way, InputWay::x11);
}

TEST(InputWay, a_wayland_session_uses_the_helper) {
  EXPECT_EQ(chooseInput({.wayland = "wayland-0"}).way, InputWay::helper);
}

TEST(InputWay, the_x_server_within_a_wayland_session_does_not_count) {
  EXPECT_EQ(chooseInput({.wayland = "wayland-0", .display = ":0"}).way, InputWay::helper);
  EXPECT_EQ(chooseInput({.sessionType = "wayland", .display = ":0"}).way, InputWay::helper);
}

TEST(InputWay, a_console_uses_the_helper) {
  EXPECT_EQ(chooseInput({.sessionType = "tty"}).way, InputWay::helper);
}

TEST(InputWay, the_user_s_wish_comes_first) {
  EXPECT_EQ(chooseInput({.wish = "helper", .display = ":0"}).way, InputWay::helper);
  EXPECT_EQ(chooseInput({.wish = "x11", .wayland = "wayland-0"}).way, InputWay::x11);
}

TEST(InputWay, a_wish_that_means_nothing_changes_nothing) {
  EXPECT_EQ(chooseInput({.wish = "evdev", .display = ":0"}).way, InputWay::x11);
}

TEST(InputWay, every_choice_has_its_reason) {
  for (const auto& choice :
       {chooseInput({}), chooseInput({.wish = "x11"}), chooseInput({.display = ":0"})}) {
    EXPECT_FALSE(choice.reason.empty());
  }
}

}  // namespace
}  // namespace vorrin
