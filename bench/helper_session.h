#pragma once

#include <linux/input-event-codes.h>
#include <sys/types.h>

#include <functional>
#include <thread>

#include "tests/machine/event_watch.h"
#include "tests/machine/login.h"
#include "tests/machine/peer.h"
#include "tests/machine/uhid_keyboard.h"

namespace vorrin::bench {

inline constexpr const char* keyboardName = "Typist's keyboard";
inline constexpr const char* keyboardPlace = "test/Typist's keyboard";
/// Where the helper says that its own keyboards are.
inline constexpr const char* clonePlace = "vorrin-input-helper";

/// Pressed until the kernel lets it through; those that were on their way come later still.
inline constexpr int firstKey = KEY_F9;

/// Waits until `condition` holds. Ends the program, with a word on `what`, when it does not.
void until(const char* what, const std::function<bool()>& condition);

/// The kernel drops what a keyboard says before it is wholly set up.
void waitUntilSetUp(machine::UhidKeyboard& keyboard, machine::EventWatch& watch);

/// The installed helper, which holds the keyboard, and a main program that claims every shortcut at
/// once.
class Filtering {
 public:
  explicit Filtering(machine::EventWatch& watch);

  /// The helper's process.
  static pid_t helper();
  /// Has the helper click.
  void click() const { peer_.post(0); }

 private:
  machine::Caller caller_{machine::playerLogin()};
  machine::Peer peer_{caller_.call("Connect").socket};
  std::jthread answering_;
};

}  // namespace vorrin::bench
