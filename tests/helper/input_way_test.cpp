#include "platform/linux/input/input_way.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

struct Case {
  const char* what;
  InputEnvironment session;
  InputWay way;
};

const Case cases[] = {
    {"an X11 session", {.sessionType = "x11", .display = ":0"}, InputWay::x11},
    {"a server and no more", {.display = ":0"}, InputWay::x11},
    {"a Wayland session", {.wayland = "wayland-0"}, InputWay::helper},
    {"an X server within one", {.wayland = "wayland-0", .display = ":0"}, InputWay::helper},
    {"the same, told", {.sessionType = "wayland", .display = ":0"}, InputWay::helper},
    {"a console", {.sessionType = "tty"}, InputWay::helper},
    {"nothing", {}, InputWay::helper},
    {"a wish for the helper", {.wish = "helper", .display = ":0"}, InputWay::helper},
    {"a wish for X11", {.wish = "x11", .wayland = "wayland-0"}, InputWay::x11},
    {"a wish without meaning", {.wish = "evdev", .display = ":0"}, InputWay::x11},
};

TEST(InputWay, follows_the_session_and_the_user_s_wish_first) {
  for (const auto& [what, session, way] : cases) {
    const auto choice = chooseInput(session);
    EXPECT_EQ(choice.way, way) << what;
    EXPECT_FALSE(choice.reason.empty()) << what;
  }
}

}  // namespace
}  // namespace vorrin
