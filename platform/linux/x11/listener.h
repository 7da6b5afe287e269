#pragma once

#include <X11/Xlib.h>

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

#include "platform/event_tap.h"
#include "platform/linux/x11/connection.h"
#include "platform/linux/x11/key_holder.h"
#include "platform/linux/x11/key_input.h"
#include "platform/linux/x11/keyboard_map.h"
#include "platform/linux/x11/poster.h"
#include "platform/linux/x11/server_clock.h"

namespace vorrin::x11 {

/// The event tap on one connection: sees every key of every keyboard, and decides by its callback
/// what becomes of the presses of the chosen keys.
///
/// Each press of a chosen key arrives twice. Its raw event, made before the server looks at grabs,
/// is what the callback judges. The press that starts the grab follows, and the verdict is carried
/// out on it: the grab is ended, and a key that shall pass is sent on through XTEST. Presses of
/// other keys that fall into the moment until the grab ends are sent on as well.
class Listener {
 public:
  Listener(Connection& connection, Poster& poster, KeyboardMap& map, std::uint64_t mask,
           EventTap::Callback callback);
  ~Listener();
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  /// Chooses the keys, by macOS virtual key code. False when another client holds one of them.
  [[nodiscard]] bool setSwallowable(std::span<const std::uint16_t> virtualKeys);

  /// While not enabled, keys are neither held back nor reported. When another client holds one of
  /// the keys by now the listener has `failed`.
  void setEnabled(bool enabled);

  /// Takes up one event of the connection.
  void handle(XEvent& event);

  /// Gives everything up and calls the callback no more. What follows has no effect.
  void end();

  /// Whether a chosen key was refused while events were handled. The listener is of no use then.
  [[nodiscard]] bool failed() const { return failed_; }

 private:
  void selectEvents(bool selected);
  void readKeyboardMap();
  [[nodiscard]] bool holdChosenKeys();
  void handleXkb(const XEvent& event);
  void handleInput(const XGenericEventCookie& cookie);
  void rescanKeyboards();
  void rawPress(const KeyInput& input);
  void rawRelease(const KeyInput& input);
  void heldPress(const KeyInput& input);
  void heldRelease(const KeyInput& input);
  void leaveKeyboard(WatchedKeyboard& keyboard);
  void finishResent(KeyCode keycode);
  [[nodiscard]] bool isStale(const KeyInput& input);
  TapVerdict report(const KeyInput& input, std::int64_t userData);
  void sendOn(KeyCode keycode, bool down);

  Connection& connection_;
  Poster& poster_;
  KeyboardMap& map_;
  std::uint64_t mask_;
  EventTap::Callback callback_;
  KeyHolder holder_;
  ServerClock clock_;
  std::vector<std::uint16_t> chosen_;
  unsigned modifiers_ = 0;
  bool enabled_ = false;
  bool ended_ = false;
  bool failed_ = false;
};

}  // namespace vorrin::x11
