#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "tap_process.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

namespace keys {
inline constexpr std::uint16_t backtick = 50;
inline constexpr std::uint16_t tab = 48;
inline constexpr std::uint16_t f6 = 97;
inline constexpr std::uint16_t f7 = 98;
inline constexpr std::uint16_t f8 = 100;
inline constexpr std::uint16_t f9 = 101;
inline constexpr std::uint16_t escape = 53;
inline constexpr std::uint16_t a = 0;
inline constexpr std::uint16_t b = 11;
}  // namespace keys

/// A press and a release of the key as the client's keys show them.
inline std::string tapOf(std::uint16_t virtualKey) {
  const std::string code = std::to_string(keycodeOf(virtualKey));
  return "+" + code + " -" + code;
}

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

  /// What the client received up to now, after the tap has taken up all that went before.
  std::vector<ClientEvent> received() {
    tap.readSeen(user);
    return client.readAll(user);
  }
};

}  // namespace vorrin::x11_tests
