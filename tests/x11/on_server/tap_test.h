#pragma once

#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "keys.h"
#include "tap_process.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/key_probe.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// A desktop with somebody else's program in front and a program that holds a tap.
struct TapTest : testing::Test {
  Desktop desktop;
  User user{desktop.display()};
  Client client{desktop.display()};
  TapProcess tap{desktop.display()};

  /// Has the program hold these keys back and swallow them all.
  void swallow(const std::string& keyCodes) {
    ASSERT_TRUE(tap.command("create " + keyCodes));
    ASSERT_TRUE(tap.command("swallow " + keyCodes));
  }

  /// Kills the program with the tap. Returns when the server has noticed, and let go what it held.
  void killTap() {
    tap.process().signal(SIGKILL);
    ASSERT_TRUE(tap.process().waitForEnd());
    ASSERT_TRUE(KeyProbe(desktop.display()).waitUntilFree(keys::backtick));
  }

  /// What the client received up to now, after the tap has taken up all that went before.
  std::vector<ClientEvent> received() {
    tap.readSeen(user);
    return client.readAll(user);
  }
};

}  // namespace vorrin::x11_tests
