#include "platform/linux/input/x11/key_holder.h"

#include <algorithm>
#include <utility>

namespace vorrin::x11 {

KeyHolder::KeyHolder(Connection& connection) : connection_(connection) {
  for (const SlaveKeyboard& slave : slaveKeyboards(connection_.display())) {
    keyboards_.push_back({slave, {}, {}, {}, {}, {}});
  }
}

bool KeyHolder::rescan(std::vector<WatchedKeyboard>& gone) {
  std::vector<WatchedKeyboard> former = std::exchange(keyboards_, {});
  for (const SlaveKeyboard& slave : slaveKeyboards(connection_.display())) {
    const auto known = std::ranges::find(former, slave.device, [](const WatchedKeyboard& keyboard) {
      return keyboard.slave.device;
    });
    if (known == former.end()) {
      keyboards_.push_back({slave, {}, {}, {}, {}, {}});
    } else {
      keyboards_.push_back(*known);
      former.erase(known);
    }
  }
  gone.insert(gone.end(), former.begin(), former.end());
  // On the keyboards known before this changes nothing.
  return grab(held_);
}

WatchedKeyboard* KeyHolder::keyboard(int device) {
  const auto found = std::ranges::find(
      keyboards_, device, [](const WatchedKeyboard& keyboard) { return keyboard.slave.device; });
  return found == keyboards_.end() ? nullptr : &*found;
}

bool KeyHolder::hold(const KeySet& keys, const std::vector<unsigned>& modifierStates) {
  if (modifierStates != modifierStates_) {
    ungrab(std::exchange(held_, {}));
    modifierStates_ = modifierStates;
  }
  wanted_ = keys;
  return settle();
}

bool KeyHolder::settle() {
  if (wanted_ == held_) return true;
  const KeySet wanted = target();
  ungrab(held_ & ~wanted);
  const KeySet added = wanted & ~held_;
  held_ &= wanted;
  if (added.none()) return true;
  if (!grab(added)) {
    held_ |= added;
    release();
    return false;
  }
  // Asked after the grabs are in force, so that no press can slip in between.
  const KeySet heldByOthers = added & keysDownAtMaster(connection_.display());
  ungrab(heldByOthers);
  held_ |= added & ~heldByOthers;
  return true;
}

void KeyHolder::release() {
  ungrab(held_);
  held_.reset();
  wanted_.reset();
  // A press that started a grab a moment ago is answered by nobody any more.
  for (const WatchedKeyboard& keyboard : keyboards_) {
    endGrab(connection_.display(), keyboard.slave.device);
  }
}

void KeyHolder::lift(KeyCode keycode) {
  for (const WatchedKeyboard& keyboard : keyboards_) {
    if (!keyboard.slave.isXtest) continue;
    ungrabKey(connection_.display(), keyboard.slave.device, keycode, modifierStates_);
  }
  lifted_.set(keycode);
}

bool KeyHolder::restore(KeyCode keycode) {
  if (!lifted_[keycode]) return true;
  lifted_.reset(keycode);
  if (!held_[keycode]) return true;
  return std::ranges::all_of(keyboards_, [&](const WatchedKeyboard& keyboard) {
    return !keyboard.slave.isXtest || grabOn(keyboard.slave, keycode);
  });
}

KeySet KeyHolder::target() const {
  KeySet keys = wanted_;
  for (const WatchedKeyboard& keyboard : keyboards_) {
    for (std::size_t code = 0; code < keys.size(); ++code) {
      const bool pending = keyboard.down[code] && keyboard.fates[code] != KeyFate::passed;
      if (held_[code] && pending) keys.set(code);
    }
  }
  return keys;
}

bool KeyHolder::grabOn(const SlaveKeyboard& keyboard, KeyCode keycode) {
  // A keyboard that is gone by now is no refusal: the server has told of it, and the event is on
  // its way.
  return grabKey(connection_.display(), keyboard.device, keycode, modifierStates_) !=
         GrabOutcome::refused;
}

bool KeyHolder::grab(const KeySet& keys) {
  for (const WatchedKeyboard& keyboard : keyboards_) {
    for (std::size_t code = 0; code < keys.size(); ++code) {
      if (!keys[code] || (lifted_[code] && keyboard.slave.isXtest)) continue;
      if (!grabOn(keyboard.slave, static_cast<KeyCode>(code))) return false;
    }
  }
  return true;
}

void KeyHolder::ungrab(const KeySet& keys) {
  for (const WatchedKeyboard& keyboard : keyboards_) {
    for (std::size_t code = 0; code < keys.size(); ++code) {
      if (!keys[code]) continue;
      ungrabKey(connection_.display(), keyboard.slave.device, static_cast<KeyCode>(code),
                modifierStates_);
    }
  }
}

}  // namespace vorrin::x11
