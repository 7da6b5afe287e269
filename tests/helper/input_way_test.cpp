#include "platform/linux/input/input_way.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>

namespace vorrin {
namespace {

struct Case {
  const char* what;
  std::map<std::string, const char*> session;
  InputWay way;
};

const Case cases[] = {
    {"an X11 session", {{"XDG_SESSION_TYPE", "x11"}, {"DISPLAY", ":0"}}, InputWay::x11},
    {"a server and no more", {{"DISPLAY", ":0"}}, InputWay::x11},
    {"a Wayland session", {{"WAYLAND_DISPLAY", "w"}}, InputWay::helper},
    {"an X server within one", {{"WAYLAND_DISPLAY", "w"}, {"DISPLAY", ":0"}}, InputWay::helper},
    {"told", {{"XDG_SESSION_TYPE", "wayland"}, {"DISPLAY", ":0"}}, InputWay::helper},
    {"a console", {{"XDG_SESSION_TYPE", "tty"}}, InputWay::helper},
    {"nothing", {}, InputWay::helper},
    {"the helper wished", {{"VORRIN_INPUT", "helper"}, {"DISPLAY", ":0"}}, InputWay::helper},
    {"X11 wished", {{"VORRIN_INPUT", "x11"}, {"WAYLAND_DISPLAY", "w"}}, InputWay::x11},
    {"a wish without meaning", {{"VORRIN_INPUT", "evdev"}, {"DISPLAY", ":0"}}, InputWay::x11},
};

TEST(InputWay, follows_the_session_and_the_user_s_wish_first) {
  for (const auto& [what, session, way] : cases) {
    for (const char* name : {"VORRIN_INPUT", "XDG_SESSION_TYPE", "WAYLAND_DISPLAY", "DISPLAY"}) {
      const auto found = session.find(name);
      ::setenv(name, found == session.end() ? "" : found->second, 1);
    }
    const auto choice = chooseInput();
    EXPECT_EQ(choice.way, way) << what;
    EXPECT_FALSE(choice.reason.empty()) << what;
  }
}

}  // namespace
}  // namespace vorrin
