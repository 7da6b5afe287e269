#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "keys.h"
#include "tap_process.h"
#include "tests/machine/event_watch.h"
#include "tests/machine/uhid_keyboard.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/user.h"

// The world that the tests of the tap happen in, as the input helper sees it: a keyboard of the
// kernel's, a reader of all devices and a program that holds a tap. Runs in the test machine.
namespace vorrin::x11_tests {

/// Somebody who types, and what everybody else sees of it.
class HelperWorld {
 public:
  HelperWorld();
  HelperWorld(const HelperWorld&) = delete;
  HelperWorld& operator=(const HelperWorld&) = delete;
  ~HelperWorld();
  /// Takes the keyboards away that were plugged in for the first one.
  static void unplug();

  void set(unsigned evdevKey, bool down);
  /// Types a key without a meaning and waits until it has come through, twice: all that was said to
  /// the helper before is obeyed then.
  void settle();
  /// Waits until the helper holds the keyboards, where it is to. Only then `settle` means anything.
  void waitForGrab();
  std::vector<ClientEvent> take();
  /// Whether what the helper posts is read: its devices are open here.
  bool seesHelper();

  bool grabWanted = false;

 private:
  void look();
  /// Types a key without a meaning and waits for it. Whether it came by way of the helper.
  bool probe(machine::UhidKeyboard& keyboard);

  static inline std::optional<machine::UhidKeyboard> keyboard_;
  /// One of its own, for a key pressed on the first would end the repeating of another there.
  static inline std::optional<machine::UhidKeyboard> probeKeyboard_;
  machine::EventWatch watch_;
  std::set<unsigned> down_;
  std::vector<ClientEvent> events_;
  std::optional<std::string> probeCameFrom_;  ///< place of the device that told of its release
};

class HelperUser {
 public:
  explicit HelperUser(HelperWorld& world) : world_(world) {}
  void press(std::uint16_t virtualKey, Source source = Source::keyboard);
  void release(std::uint16_t virtualKey, Source source = Source::keyboard);
  void tap(std::uint16_t virtualKey, Source source = Source::keyboard);
  void pressEvdev(unsigned code) { world_.set(code, true); }
  void releaseEvdev(unsigned code) { world_.set(code, false); }
  void tapEvdev(unsigned code);
  /// Types letters a to z, digits and blanks.
  void type(std::string_view text);

 private:
  HelperWorld& world_;
};

class HelperClient {
 public:
  explicit HelperClient(HelperWorld& world) : world_(world) {}
  std::vector<ClientEvent> readUntil(const std::function<bool(const ClientEvent&)>& wanted);
  std::vector<ClientEvent> readAll(const HelperUser& user);

 private:
  HelperWorld& world_;
  std::deque<ClientEvent> unread_;
};

class HelperTap {
 public:
  /// Returns when the helper serves the program.
  explicit HelperTap(HelperWorld& world);
  ~HelperTap() { world_.grabWanted = false; }
  HelperTap(const HelperTap&) = delete;
  HelperTap& operator=(const HelperTap&) = delete;

  bool command(const std::string& line);
  void start(const std::string& line) { process_.start(line); }
  bool waitForPress(std::int64_t keyCode) { return process_.waitForPress(keyCode); }
  bool waitForRepeat(std::int64_t keyCode) { return process_.waitForRepeat(keyCode); }
  std::vector<SeenKey> readSeen();
  Process& process() { return process_.process(); }

 private:
  HelperWorld& world_;
  TapProcess process_;
};

/// Where keys come from here.
inline constexpr Source sources[] = {Source::keyboard};

struct TapTest : testing::Test {
  HelperWorld world;
  HelperUser user{world};
  HelperClient client{world};
  HelperTap tap{world};

  static void TearDownTestSuite() { HelperWorld::unplug(); }

  void swallow(const std::string& keyCodes) {
    ASSERT_TRUE(tap.command("create " + keyCodes));
    ASSERT_TRUE(tap.command("swallow " + keyCodes));
  }

  std::vector<ClientEvent> received() {
    tap.readSeen();
    return client.readAll(user);
  }
};

}  // namespace vorrin::x11_tests
