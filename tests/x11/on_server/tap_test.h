#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "keys.h"
#include "tap_process.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/other_client.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// Where keys come from here.
inline constexpr Source sources[] = {Source::keyboard, Source::xtest};
inline std::string nameOf(const testing::TestParamInfo<Source>& source) {
  return source.param == Source::keyboard ? "Keyboard" : "Xtest";
}

/// A desktop with somebody else's program in front and a program that holds a tap.
struct TapTest : testing::Test {
  explicit TapTest(Desktop& place = Desktop::shared()) : desktop(place) {}

  Desktop& desktop;
  User user{desktop.display()};
  Client client{desktop.display()};
  TapProcess tap{desktop.display()};

  /// Has the program claim these keys and swallow them all.
  void swallow(const std::string& keyCodes) {
    ASSERT_TRUE(tap.command("create " + keyCodes));
    ASSERT_TRUE(tap.command("swallow " + keyCodes));
  }

  /// Kills the program with the tap. Returns when the server has noticed, and let go what it held.
  void killTap() {
    tap.process().signal(SIGKILL);
    ASSERT_TRUE(tap.process().waitForEnd());
    ASSERT_TRUE(OtherClient(desktop.display()).waitUntilFree(keys::backtick));
  }

  /// What the client received up to now, after the tap has taken up all that went before.
  std::vector<ClientEvent> received() {
    tap.readSeen();
    return client.readAll(user);
  }
};

/// With commands that change the keyboard's map, which is as before at the end.
struct MapTest : TapTest {
  ~MapTest() override { run({"setxkbmap", "-layout", "us", "-variant", "", "-option", ""}); }

  void run(const std::vector<std::string>& command) {
    Process process(command, {{"DISPLAY", desktop.display()}});
    ASSERT_EQ(process.waitForEnd(), Ending{});
  }
};

}  // namespace vorrin::x11_tests
