#pragma once

#include <cstdint>

#include "bridge/keyboard_listener.h"
#include "support/system_test.h"

namespace vorrin::test {

class ListenerTest : public SystemTest {
 protected:
  static TapVerdict press(std::int64_t key, std::uint64_t flags = 0) {
    return fake::feed({.type = EventType::keyDown, .keyCode = key, .flags = flags});
  }
  static TapVerdict repeat(std::int64_t key) {
    return fake::feed({.type = EventType::keyDown, .keyCode = key, .autorepeat = 1});
  }
  static TapVerdict release(std::int64_t key) {
    return fake::feed({.type = EventType::keyUp, .keyCode = key});
  }
};

/// With a tap that listens.
class ConnectedTest : public ListenerTest {
 protected:
  ConnectedTest() {
    connectKeyboardListener();
    fake::system().tapSwitches.clear();
  }
};

}  // namespace vorrin::test
