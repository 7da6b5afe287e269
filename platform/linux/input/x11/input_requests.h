#pragma once

#include <X11/Xlib.h>

#include <bitset>
#include <span>
#include <vector>

namespace vorrin::x11 {

/// One bit a key code of the server's.
using KeySet = std::bitset<256>;

/// A keyboard that feeds a master keyboard: a device of the user's, or the one all XTEST clients
/// share.
struct SlaveKeyboard {
  int device = 0;
  bool isXtest = false;
};

/// All enabled slave keyboards. One that somebody grabs at the moment is reported by the server as
/// attached to no master; it is among them.
std::vector<SlaveKeyboard> slaveKeyboards(Display* display);

/// Turns on or off the events that show every key of every keyboard, and changes of the devices.
void selectRawKeys(Display* display, bool selected);

/// What became of a request to take a key away from all other programs.
enum class GrabOutcome {
  granted,
  refused,  ///< another client holds the key of this keyboard
  gone      ///< there is no such keyboard any more
};

/// Asks for the presses of `keycode` on the slave keyboard `device` that happen under one of the
/// modifier states. A press then reaches no other program: it starts a grab by which the keyboard
/// is cut off from its master until `endGrab` or the key's release.
///
/// Grabbing slaves is what keeps the focus events, freezes and lost key-ups away that grabs of the
/// master keyboard bring for the window in front, and it works while a menu or another program
/// grabs the master. The grab is asynchronous, so a stopped process never holds up the keyboard.
GrabOutcome grabKey(Display* display, int device, KeyCode keycode,
                    std::span<const unsigned> modifierStates);

/// Undoes `grabKey`. A grab that is going on is not ended.
void ungrabKey(Display* display, int device, KeyCode keycode,
               std::span<const unsigned> modifierStates);

/// Ends the grab that a press started, so that other keys of that keyboard reach their window.
void endGrab(Display* display, int device);

/// The keys that are down for all other programs.
KeySet keysDownAtMaster(Display* display);

}  // namespace vorrin::x11
