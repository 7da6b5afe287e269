#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "platform/event_tap.h"
#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/key_flow.h"
#include "platform/linux/input/x11/key_holder.h"
#include "platform/linux/input/x11/keyboard_map.h"
#include "platform/linux/input/x11/poster.h"

namespace vorrin::x11 {

/// The event tap on one connection: sees every key of every keyboard, and lets its callback decide
/// what becomes of the presses of the chosen keys.
class Listener {
 public:
  Listener(Connection& connection, Poster& poster, KeyboardMap& map, std::uint64_t mask,
           EventTap::Callback callback);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  /// Chooses the keys, by macOS virtual key code. False when another client holds one of them.
  [[nodiscard]] bool claim(std::span<const std::uint16_t> virtualKeys);

  /// Whether `claim` would be granted these keys.
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> virtualKeys);

  /// While not enabled, keys are neither held back nor reported. When another client holds one of
  /// the keys by now the listener has `failed`.
  void setEnabled(bool enabled);

  /// Takes up one event of the connection. The callback is not called yet.
  void handle(XEvent& event);

  /// Whether events wait for the callback. It is called for one of them at a time, best when no
  /// more events of the connection can be read.
  [[nodiscard]] bool hasNext() const { return !ended_ && flow_.hasNext(); }
  void serveNext() { flow_.serveNext(); }

  /// Gives everything up and calls the callback no more. What follows has no effect.
  void end();

  /// Whether a chosen key was refused while events were handled. The listener is of no use then.
  [[nodiscard]] bool failed() const { return failed_ || flow_.failed(); }

 private:
  void selectEvents(bool selected);
  void readKeyboardMap();
  [[nodiscard]] bool holdChosenKeys();
  /// Returns when the server has served all that was asked of it.
  void waitForServer();
  void takeUpLastKeys();
  void handleXkb(const XEvent& event);
  void handleInput(XEvent& event);
  void handleInput(const XGenericEventCookie& cookie);
  void rescanKeyboards();
  TapVerdict judge(const TapEvent& event) const;

  Connection& connection_;
  Poster& poster_;
  KeyboardMap& map_;
  std::uint64_t mask_;
  EventTap::Callback callback_;
  KeyHolder holder_;
  KeyFlow flow_;
  std::vector<std::uint16_t> chosen_;
  unsigned modifiers_ = 0;
  bool enabled_ = false;
  bool ended_ = false;
  bool failed_ = false;
};

}  // namespace vorrin::x11
