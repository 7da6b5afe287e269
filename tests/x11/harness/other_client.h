#pragma once

#include <cstdint>
#include <set>
#include <string>

#include "tests/x11/harness/display.h"
#include "tests/x11/harness/user.h"

namespace vorrin::x11_tests {

/// Another program that grabs keys and changes devices. When it goes, what it holds is free and
/// what it added is gone.
class OtherClient {
 public:
  explicit OtherClient(const std::string& display) : display_(openDisplay(display)) {}
  ~OtherClient();
  OtherClient(const OtherClient&) = delete;
  OtherClient& operator=(const OtherClient&) = delete;

  /// Grabs one key of a slave keyboard. False when it is refused.
  bool holdKey(std::uint16_t virtualKey, const std::string& device = serverKeyboard);

  /// Whether another program holds a key of the server's keyboard back from all others, asked in an
  /// instant in which the server serves nobody else. For Vorrin that is the sign that it would take
  /// up a shortcut: not before it listens, and not while its own window is in front, which it
  /// learns a moment after the window manager.
  bool isHeld(std::uint16_t virtualKey);
  /// False when that is not so in time.
  bool waitUntilHeld(std::uint16_t virtualKey);
  bool waitUntilFree(std::uint16_t virtualKey);

  /// Grabs one key as programs with global shortcuts commonly do. False when it is refused.
  bool holdKeyOfCore(std::uint16_t virtualKey);

  /// Grabs the whole keyboard, as an open menu does. A frozen one waits for the grab's owner.
  bool grabKeyboard(bool frozen);

  /// The presses that it received through its grabs.
  int pressesReceived();

  /// Tells a window of a key press and release that never were.
  void makeUpKey(std::uint16_t virtualKey, unsigned long window);

  /// Keeps all other programs from the server in between.
  void stopServer();
  void resumeServer();

  /// Adds a pair of master devices, and with it a new slave keyboard "NAME XTEST keyboard".
  void addMaster(const std::string& name);
  void removeMaster(const std::string& name);

  /// Detaches the server's keyboard from its master, and attaches it again.
  void detachKeyboard();
  void attachKeyboard();

 private:
  DisplayPointer display_;
  std::set<std::string> added_;
};

}  // namespace vorrin::x11_tests
