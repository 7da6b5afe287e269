#include "platform/linux/input/x11/key_flow.h"

#include <chrono>
#include <utility>

namespace vorrin::x11 {

namespace {

// A held key that was pressed longer ago than this does nothing any more. Whoever sees no effect
// for a second presses again; taking up both presses after a stall would undo the user's wish.
constexpr std::chrono::milliseconds staleAfter{1000};

ServerClock::Local localTime() {
  return std::chrono::duration_cast<ServerClock::Local>(
      std::chrono::steady_clock::now().time_since_epoch());
}

bool isForwarded(const std::optional<Post>& own) {
  return own && own->reason == Post::Reason::forwarded;
}

std::int64_t userDataOf(const std::optional<Post>& own) {
  return own ? own->userData : 0;
}

KeyCode codeOf(const KeyInput& input) {
  return static_cast<KeyCode>(input.keycode);
}

}  // namespace

KeyFlow::KeyFlow(Connection& connection, Poster& poster, KeyHolder& holder, const KeyboardMap& map,
                 Judge judge)
    : connection_(connection),
      poster_(poster),
      holder_(holder),
      map_(map),
      judge_(std::move(judge)) {
  clock_.set(connection_.serverTime(), localTime());
}

void KeyFlow::rawPress(const KeyInput& input, unsigned modifiers) {
  const std::optional<Post> own = poster_.ledger().take(input.serial, input.keycode, true);
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (isForwarded(own) || keyboard == nullptr) return;
  const bool isHeld = holder_.holds(input.keycode);
  keyboard->down.set(input.keycode);
  keyboard->fates[input.keycode] = KeyFate::passed;
  keyboard->judged[input.keycode] = isHeld;
  keyboard->unwanted[input.keycode] = isHeld;
  keyboard->unreported[input.keycode] = isHeld && isStale(input);
  // The grab is in force already, for the server looks at grabs before it serves another request.
  if (isHeld) cutOff_.push_back(input.device);
  if (keyboard->unreported[input.keycode]) return;
  waiting_.push_back(
      {isHeld ? Step::judge : Step::show, input, eventOf(input, modifiers, userDataOf(own))});
}

void KeyFlow::rawRelease(const KeyInput& input, unsigned modifiers) {
  const std::optional<Post> own = poster_.ledger().take(input.serial, input.keycode, false);
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (isForwarded(own) || keyboard == nullptr) return;
  keyboard->down.reset(input.keycode);
  if (!keyboard->judged[input.keycode]) finishRelease(*keyboard, codeOf(input));
  waiting_.push_back({keyboard->judged[input.keycode] ? Step::release : Step::show, input,
                      eventOf(input, modifiers, userDataOf(own))});
  if (keyboard->unreported[input.keycode]) waiting_.back().event.reset();
}

void KeyFlow::heldPress(const KeyInput& input, unsigned modifiers) {
  cutOff_.push_back(input.device);
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr) return;
  KeyFate& fate = keyboard->fates[input.keycode];
  if (input.repeat) {
    // A repeat shares its press's fate, whatever the tap thinks of it by now.
    if (fate == KeyFate::passed || keyboard->unreported[input.keycode]) return;
    waiting_.push_back({Step::show, input, eventOf(input, modifiers, 0)});
    return;
  }
  if (!keyboard->judged[input.keycode]) {
    fate = KeyFate::resent;
    giveWayToXtest(*keyboard);
    pressAnew(*keyboard, codeOf(input));
    return;
  }
  fate = KeyFate::swallowed;
  waiting_.push_back({Step::carryOut, input, std::nullopt});
}

void KeyFlow::heldRelease(const KeyInput& input) {
  // The raw event has dealt with all but one case: the key was pressed before this keyboard was cut
  // off, so it is still down for the window in front.
  const WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr || keyboard->fates[input.keycode] != KeyFate::passed) return;
  giveWayToXtest(*keyboard);
  sendOn(codeOf(input), false);
}

void KeyFlow::leave(WatchedKeyboard& keyboard) {
  for (std::size_t code = 0; code < keyboard.down.size(); ++code) {
    if (!keyboard.down[code]) continue;
    keyboard.down.reset(code);
    const KeyInput release{.device = keyboard.slave.device,
                           .source = keyboard.slave.device,
                           .keycode = static_cast<unsigned>(code)};
    finishRelease(keyboard, codeOf(release));
    if (!keyboard.unreported[code]) {
      waiting_.push_back({Step::show, release, eventOf(release, 0, 0)});
    }
  }
}

void KeyFlow::serveNext() {
  if (!cutOff_.empty()) return endGrabs();
  if (sendingOn_) return finishSendingOn();
  const Waiting next = waiting_.front();
  waiting_.pop_front();
  serve(next);
}

void KeyFlow::serve(const Waiting& next) {
  const TapVerdict verdict = next.step == Step::carryOut ? TapVerdict::pass : ask(next.event);
  WatchedKeyboard* const keyboard = holder_.keyboard(next.input.device);
  if (keyboard == nullptr) return;
  if (next.step == Step::judge) {
    keyboard->unwanted[next.input.keycode] = verdict == TapVerdict::swallow;
  } else if (next.step == Step::carryOut) {
    carryOut(*keyboard, codeOf(next.input));
  } else if (next.step == Step::release) {
    finishRelease(*keyboard, codeOf(next.input));
  }
}

std::optional<TapEvent> KeyFlow::eventOf(const KeyInput& input, unsigned modifiers,
                                         std::int64_t userData) const {
  const std::optional<std::uint16_t> virtualKey = map_.virtualKey(input.keycode);
  if (!virtualKey || input.serial < shownFrom_) return std::nullopt;
  return tapEvent(input, *virtualKey, eventFlags(modifiers, map_.modifiers()), userData);
}

bool KeyFlow::isStale(const KeyInput& input) {
  if (clock_.age(input.time, localTime()) <= staleAfter) return false;
  clock_.set(connection_.serverTime(), localTime());
  return clock_.age(input.time, localTime()) > staleAfter;
}

TapVerdict KeyFlow::ask(const std::optional<TapEvent>& event) const {
  return event ? judge_(*event) : TapVerdict::pass;
}

void KeyFlow::endGrabs() {
  for (const int device : cutOff_) endGrab(connection_.display(), device);
  cutOff_.clear();
  // When this is answered, every key that was still cut off can be read.
  finishSendingOn();
}

void KeyFlow::finishSendingOn() {
  // The tap's callback may act on the server by another connection, or have others do so. Requests
  // of two connections are served in any order unless the first is waited for.
  XSync(connection_.display(), False);
  sendingOn_ = false;
}

void KeyFlow::carryOut(WatchedKeyboard& keyboard, KeyCode keycode) {
  const bool isUnwanted = keyboard.unwanted[keycode];
  keyboard.fates[keycode] = isUnwanted ? KeyFate::swallowed : KeyFate::resent;
  if (isUnwanted) return;
  if (holder_.holds(keycode)) holder_.lift(keycode);
  pressAnew(keyboard, keycode);
}

void KeyFlow::finishRelease(WatchedKeyboard& keyboard, KeyCode keycode) {
  if (keyboard.fates[keycode] == KeyFate::resent) {
    sendOn(keycode, false);
    failed_ = !holder_.restore(keycode) || failed_;
  }
  failed_ = !holder_.settle() || failed_;
  poster_.flush();
}

void KeyFlow::giveWayToXtest(const WatchedKeyboard& keyboard) {
  // What is sent on comes from XTEST's keyboard and would be cut off with it as well.
  if (keyboard.slave.isXtest) endGrab(connection_.display(), keyboard.slave.device);
}

void KeyFlow::pressAnew(const WatchedKeyboard& keyboard, KeyCode keycode) {
  // XTEST's own key is down already when the press came from there.
  if (keyboard.slave.isXtest) sendOn(keycode, false);
  sendOn(keycode, true);
}

void KeyFlow::sendOn(KeyCode keycode, bool down) {
  sendingOn_ = true;
  poster_.key(keycode, down, {Post::Reason::forwarded, 0});
}

}  // namespace vorrin::x11
