#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/input_requests.h"

namespace vorrin::x11 {

/// What other programs got of the last press of a key.
enum class KeyFate : std::uint8_t {
  passed,     ///< the press itself
  swallowed,  ///< nothing
  resent      ///< a press sent in its stead, to be followed by a release
};

/// A keyboard and what its keys are at.
struct WatchedKeyboard {
  SlaveKeyboard slave;
  KeySet down;
  KeySet judged;      ///< keys whose last press was held back and put to the tap
  KeySet unwanted;    ///< those of them that the tap wants swallowed, or has not judged yet
  KeySet unreported;  ///< those of them that were too old for the tap to be asked
  std::array<KeyFate, 256> fates{};
};

/// Holds chosen keys of all keyboards back from other programs. A change never splits a press from
/// its release: a key given up while it is held down stays held back until it is released, and a
/// key taken up while other programs have it down is held back only after its release.
class KeyHolder {
 public:
  explicit KeyHolder(Connection& connection);

  KeyHolder(const KeyHolder&) = delete;
  KeyHolder& operator=(const KeyHolder&) = delete;

  /// Looks for the keyboards there are now, and holds the same keys on new ones. The keyboards that
  /// are gone are added to `gone`. False when a key is refused.
  [[nodiscard]] bool rescan(std::vector<WatchedKeyboard>& gone);

  /// The keyboard with this device number; null for an unknown one.
  WatchedKeyboard* keyboard(int device);
  std::vector<WatchedKeyboard>& keyboards() { return keyboards_; }

  /// Holds exactly `keys` from now on, pressed under one of `modifierStates`. False when another
  /// client holds one of them: then none is held any more.
  [[nodiscard]] bool hold(const KeySet& keys, const std::vector<unsigned>& modifierStates);

  /// Catches up on a change put off until a key's release. As `hold`.
  [[nodiscard]] bool settle();

  /// Gives up every key at once.
  void release();

  /// Whether presses of the key are held back now.
  [[nodiscard]] bool holds(unsigned keycode) const { return held_[keycode]; }

  /// Lets a held key through when it comes from XTEST, until `restore`.
  void lift(KeyCode keycode);
  [[nodiscard]] bool restore(KeyCode keycode);

 private:
  [[nodiscard]] KeySet target() const;
  [[nodiscard]] bool grabOn(const SlaveKeyboard& keyboard, KeyCode keycode);
  [[nodiscard]] bool grab(const KeySet& keys);
  void ungrab(const KeySet& keys);

  Connection& connection_;
  std::vector<WatchedKeyboard> keyboards_;
  std::vector<unsigned> modifierStates_;
  KeySet wanted_;
  KeySet held_;
  KeySet lifted_;
};

}  // namespace vorrin::x11
