#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "platform/event_tap.h"
#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/key_holder.h"
#include "platform/linux/input/x11/key_input.h"
#include "platform/linux/input/x11/keyboard_map.h"
#include "platform/linux/input/x11/poster.h"
#include "platform/linux/input/x11/server_clock.h"

namespace vorrin::x11 {

/// What becomes of each key event: which the tap is shown, and what other programs get.
///
/// The press of a held key arrives twice. Its raw event, made before the server looks at grabs, is
/// what the tap judges. The press that starts the grab follows, and the verdict is carried out on
/// it: a key that shall pass is sent on through XTEST. Keys typed until the grab is ended are cut
/// off with it and are sent on as well.
///
/// So that they keep their order, the keys that can be read are sent on first, then the grab is
/// ended, and only when the server has done both is the tap asked, which may take its time:
/// `serveNext` does all but the first when no more events can be read.
class KeyFlow {
 public:
  using Judge = std::function<TapVerdict(const TapEvent&)>;

  /// The holder, the poster and the map belong to the caller.
  KeyFlow(Connection& connection, Poster& poster, KeyHolder& holder, const KeyboardMap& map,
          Judge judge);

  /// Events in the order they were read, with the modifier state that the keyboard had.
  void rawPress(const KeyInput& input, unsigned modifiers);
  void rawRelease(const KeyInput& input, unsigned modifiers);
  void heldPress(const KeyInput& input, unsigned modifiers);
  void heldRelease(const KeyInput& input);

  /// Ends what is going on with a keyboard: what is down counts as released.
  void leave(WatchedKeyboard& keyboard);

  /// Whether there is a grab to end, a key on its way to other programs, or something for the tap
  /// to judge or see.
  [[nodiscard]] bool hasNext() const { return !cutOff_.empty() || sendingOn_ || !waiting_.empty(); }
  void serveNext();

  /// Shows the tap nothing that happened before the request `serial` was served.
  void showFrom(unsigned long serial) { shownFrom_ = serial; }

  /// Whether a held key was refused meanwhile.
  [[nodiscard]] bool failed() const { return failed_; }

 private:
  enum class Step {
    show,      // the verdict does not matter
    judge,     // a held key's press
    carryOut,  // the grab that the press started
    release    // of a held key
  };
  struct Waiting {
    Step step;
    KeyInput input;
    std::optional<TapEvent> event;  // nothing for keys that the tap does not know
  };

  [[nodiscard]] std::optional<TapEvent> eventOf(const KeyInput& input, unsigned modifiers,
                                                std::int64_t userData) const;
  [[nodiscard]] bool isStale(const KeyInput& input);
  TapVerdict ask(const std::optional<TapEvent>& event) const;
  void endGrabs();
  void finishSendingOn();
  void serve(const Waiting& next);
  void carryOut(WatchedKeyboard& keyboard, KeyCode keycode);
  void finishRelease(WatchedKeyboard& keyboard, KeyCode keycode);
  void giveWayToXtest(const WatchedKeyboard& keyboard);
  void pressAnew(const WatchedKeyboard& keyboard, KeyCode keycode);
  void sendOn(KeyCode keycode, bool down);

  Connection& connection_;
  Poster& poster_;
  KeyHolder& holder_;
  const KeyboardMap& map_;
  Judge judge_;
  ServerClock clock_;
  std::vector<int> cutOff_;  // the keyboards under a grab of ours
  std::deque<Waiting> waiting_;
  bool sendingOn_ = false;
  unsigned long shownFrom_ = 0;
  bool failed_ = false;
};

}  // namespace vorrin::x11
