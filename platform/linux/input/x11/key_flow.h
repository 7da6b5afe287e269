#pragma once

#include <xcb/xinput.h>

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "platform/event_tap.h"
#include "platform/linux/input/x11/key_grabs.h"
#include "platform/linux/input/x11/keyboard_map.h"
#include "platform/linux/input/x11/poster.h"

namespace vorrin::x11 {

/// What becomes of the user's keys: which the tap is shown, and what other programs get.
///
/// The press of a claimed key cuts its keyboard off from all other programs until the grab that it
/// started is ended. Keys typed meanwhile come to us alone and are sent on through XTEST. So that
/// nobody waits for the tap, which may take its time, the keys that can be read are sent on first,
/// then the grab is ended, and only then is the tap asked. A key that it lets pass is sent on too.
///
/// Outside of such a grab every key of every keyboard is read, but nothing is done for it unless it
/// is Escape or the release of a key that was caught.
class KeyFlow {
 public:
  using Ask = std::function<TapVerdict(const TapEvent&)>;

  /// All that it refers to belongs to the caller.
  KeyFlow(KeyGrabs& grabs, const KeyboardMap& map, Poster& poster, Ask ask);

  /// As the operations of `EventTap`.
  [[nodiscard]] bool claim(std::span<const std::uint16_t> virtualKeys);
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> virtualKeys) const;
  /// Claims the same keys where the map has them by now.
  [[nodiscard]] bool claimAgain();

  /// A key as every keyboard tells of it, and one that came to us alone; in the order they were
  /// read.
  void readRaw(const xcb_input_raw_key_press_event_t& event);
  void readCaught(const xcb_input_key_press_event_t& event);

  /// Ends the grabs that were started by what was read. Queued, as all that is sent on.
  void endGrabs();

  /// Has the tap judge one of the keys that were read; false when there is none.
  bool judgeNext();

  /// What is down on keyboards that are gone counts as released.
  void leaveLost();
  /// The same for all keyboards, without a word to the tap.
  void leaveAll();

 private:
  /// A key that was pressed under a grab of ours and is still down.
  struct CaughtKey {
    Device device = 0;
    xcb_keycode_t keycode = 0;
    /// What the tap takes it for; nothing when it is not told.
    std::optional<std::uint16_t> shown = {};
    bool sentOn = false;  ///< other programs have it down too
  };

  /// Something that the tap is to see. A verdict counts for a caught key alone.
  struct Heard {
    TapEvent event;
    Device device = 0;
    xcb_keycode_t keycode = 0;  ///< 0 when it was not caught
  };

  void readPress(const xcb_input_key_press_event_t& event);
  void release(const CaughtKey& key);
  void hear(const CaughtKey& key, std::uint16_t virtualKey, bool down, bool repeated = false);
  [[nodiscard]] KeySet keycodesOf(std::span<const std::uint16_t> virtualKeys) const;
  [[nodiscard]] std::optional<std::uint16_t> claimedKey(xcb_keycode_t keycode) const;
  CaughtKey* find(Device device, xcb_keycode_t keycode);
  void forget(const CaughtKey& key);
  void sendPress(CaughtKey& key);
  void sendRelease(xcb_keycode_t keycode);

  KeyGrabs& grabs_;
  const KeyboardMap& map_;
  Poster& poster_;
  Ask ask_;
  std::vector<std::uint16_t> claimed_;
  std::vector<CaughtKey> caught_;
  bool isCutOff_ = false;  // a keyboard is under a grab of ours
  std::deque<Heard> heard_;
};

}  // namespace vorrin::x11
