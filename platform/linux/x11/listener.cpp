#include "platform/linux/x11/listener.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XKBproto.h>

#include <chrono>

namespace vorrin::x11 {

namespace {

// A chosen key that was pressed longer ago than this does nothing any more. Whoever sees no effect
// for a second presses again; taking up both presses after a stall would undo the user's wish.
constexpr std::chrono::milliseconds staleAfter{1000};

ServerClock::Local localTime() {
  return std::chrono::duration_cast<ServerClock::Local>(
      std::chrono::steady_clock::now().time_since_epoch());
}

}  // namespace

Listener::Listener(Connection& connection, Poster& poster, KeyboardMap& map, std::uint64_t mask,
                   EventTap::Callback callback)
    : connection_(connection),
      poster_(poster),
      map_(map),
      mask_(mask),
      callback_(callback),
      holder_(connection) {
  selectEvents(true);
  readKeyboardMap();
  XkbStateRec state{};
  if (XkbGetState(connection_.display(), XkbUseCoreKbd, &state) == Success) modifiers_ = state.mods;
  clock_.set(connection_.serverTime(), localTime());
}

Listener::~Listener() {
  end();
}

bool Listener::setSwallowable(std::span<const std::uint16_t> virtualKeys) {
  if (ended_ || connection_.lost()) return false;
  chosen_.assign(virtualKeys.begin(), virtualKeys.end());
  if (enabled_) return holdChosenKeys();
  // Nothing may be held back while the tap is off, but who chooses the keys wants to know.
  enabled_ = true;
  const bool granted = holdChosenKeys();
  enabled_ = false;
  return holdChosenKeys() && granted;
}

void Listener::setEnabled(bool enabled) {
  if (ended_ || connection_.lost()) return;
  enabled_ = enabled;
  failed_ = !holdChosenKeys() || failed_;
}

void Listener::end() {
  if (ended_) return;
  ended_ = true;
  if (connection_.lost()) return;
  for (WatchedKeyboard& keyboard : holder_.keyboards()) leaveKeyboard(keyboard);
  holder_.release();
  selectEvents(false);
  poster_.flush();
}

void Listener::handle(XEvent& event) {
  if (ended_) return;
  Display* const display = connection_.display();
  if (event.type == connection_.xkbEventBase()) return handleXkb(event);
  if (event.type == MappingNotify) return readKeyboardMap();
  if (event.type != GenericEvent || event.xcookie.extension != connection_.inputOpcode()) return;
  if (XGetEventData(display, &event.xcookie) == 0) return;
  handleInput(event.xcookie);
  XFreeEventData(display, &event.xcookie);  // its own memory: needs no server
}

void Listener::selectEvents(bool selected) {
  Display* const display = connection_.display();
  selectRawKeys(display, selected);
  const unsigned long maps = XkbNewKeyboardNotifyMask | XkbMapNotifyMask | XkbNamesNotifyMask;
  XkbSelectEvents(display, XkbUseCoreKbd, maps, selected ? maps : 0);
  // Each part is named because the server tells of a change only if a selected part changed, and
  // the whole state is read from what it tells.
  const unsigned long parts =
      XkbModifierStateMask | XkbModifierBaseMask | XkbModifierLatchMask | XkbModifierLockMask;
  XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, parts, selected ? parts : 0);
}

void Listener::readKeyboardMap() {
  map_.read(connection_.display());
  failed_ = !holdChosenKeys() || failed_;
}

bool Listener::holdChosenKeys() {
  KeySet keys;
  for (const std::uint16_t virtualKey : chosen_) {
    const KeyCode keycode = map_.keycode(virtualKey);
    if (enabled_ && keycode != 0) keys.set(keycode);
  }
  const bool granted = holder_.hold(keys, lockStates(map_.modifiers()));
  poster_.flush();
  return granted;
}

void Listener::handleXkb(const XEvent& event) {
  XkbEvent xkb;
  xkb.core = event;
  switch (xkb.any.xkb_type) {
    case XkbStateNotify:
      modifiers_ = xkb.state.mods;
      break;
    case XkbNewKeyboardNotify:
      // Each time another keyboard is typed on, the core keyboard takes over its map, which the
      // server announces like this. Those maps agree in all that is read here.
      if (xkb.new_kbd.req_minor != X_kbSetMap) readKeyboardMap();
      break;
    case XkbMapNotify:
    case XkbNamesNotify:
      readKeyboardMap();
      break;
    default:
      break;
  }
}

void Listener::handleInput(const XGenericEventCookie& cookie) {
  switch (cookie.evtype) {
    case XI_HierarchyChanged:
      rescanKeyboards();
      break;
    case XI_RawKeyPress:
    case XI_RawKeyRelease: {
      const KeyInput input = keyInput(*static_cast<const XIRawEvent*>(cookie.data));
      if (isOfSlave(input)) input.down ? rawPress(input) : rawRelease(input);
      break;
    }
    case XI_KeyPress:
      heldPress(keyInput(*static_cast<const XIDeviceEvent*>(cookie.data)));
      break;
    case XI_KeyRelease:
      heldRelease(keyInput(*static_cast<const XIDeviceEvent*>(cookie.data)));
      break;
    default:
      break;
  }
}

void Listener::rescanKeyboards() {
  std::vector<WatchedKeyboard> gone;
  failed_ = !holder_.rescan(gone) || failed_;
  for (WatchedKeyboard& keyboard : gone) leaveKeyboard(keyboard);
  failed_ = !holder_.settle() || failed_;
  poster_.flush();
}

void Listener::rawPress(const KeyInput& input) {
  const std::optional<Post> own = poster_.ledger().take(input.serial, input.keycode, true);
  if (own && own->reason == Post::Reason::forwarded) return;
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr) return;
  const bool chosen = holder_.holds(input.keycode);
  const bool stale = chosen && isStale(input);
  keyboard->down.set(input.keycode);
  keyboard->fates[input.keycode] = KeyFate::passed;
  keyboard->unreported[input.keycode] = stale;
  keyboard->unwanted[input.keycode] = stale;
  if (chosen) {
    // The grab is in force by now, for the server looks at grabs before it serves another request.
    // It is ended ahead of the callback, which may take its time.
    endGrab(connection_.display(), input.device);
    poster_.flush();
  }
  if (stale) return;
  const TapVerdict verdict = report(input, own ? own->userData : 0);
  keyboard->unwanted[input.keycode] = chosen && verdict == TapVerdict::swallow;
}

void Listener::rawRelease(const KeyInput& input) {
  const std::optional<Post> own = poster_.ledger().take(input.serial, input.keycode, false);
  if (own && own->reason == Post::Reason::forwarded) return;
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr) return;
  keyboard->down.reset(input.keycode);
  const bool reported = !keyboard->unreported[input.keycode];
  if (keyboard->fates[input.keycode] == KeyFate::resent) {
    finishResent(static_cast<KeyCode>(input.keycode));
  }
  failed_ = !holder_.settle() || failed_;
  poster_.flush();
  if (reported) report(input, own ? own->userData : 0);
}

void Listener::heldPress(const KeyInput& input) {
  // Once more for repeats, of which there is no raw event, and for keys that are not chosen.
  endGrab(connection_.display(), input.device);
  poster_.flush();
  WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr) return;
  KeyFate& fate = keyboard->fates[input.keycode];
  if (input.repeat) {
    // A repeat shares its press's fate, whatever the callback thinks of it by now.
    if (fate != KeyFate::passed && !keyboard->unreported[input.keycode]) report(input, 0);
    return;
  }
  if (keyboard->unwanted[input.keycode]) {
    fate = KeyFate::swallowed;
    return;
  }
  fate = KeyFate::resent;
  const auto keycode = static_cast<KeyCode>(input.keycode);
  if (holder_.holds(keycode)) holder_.lift(keycode);
  // XTEST's own key is down already when the press came from there.
  if (keyboard->slave.isXtest) sendOn(keycode, false);
  sendOn(keycode, true);
  poster_.flush();
}

void Listener::heldRelease(const KeyInput& input) {
  // The raw event has dealt with all but one case: the key was pressed before this keyboard was cut
  // off, so it is still down for the window in front.
  const WatchedKeyboard* const keyboard = holder_.keyboard(input.device);
  if (keyboard == nullptr || keyboard->fates[input.keycode] != KeyFate::passed) return;
  sendOn(static_cast<KeyCode>(input.keycode), false);
  poster_.flush();
}

void Listener::leaveKeyboard(WatchedKeyboard& keyboard) {
  for (std::size_t code = 0; code < keyboard.down.size(); ++code) {
    if (!keyboard.down[code]) continue;
    keyboard.down.reset(code);
    const auto keycode = static_cast<KeyCode>(code);
    if (keyboard.fates[code] == KeyFate::resent) finishResent(keycode);
    if (keyboard.unreported[code]) continue;
    report({.device = keyboard.slave.device, .source = keyboard.slave.device, .keycode = keycode},
           0);
  }
}

void Listener::finishResent(KeyCode keycode) {
  sendOn(keycode, false);
  failed_ = !holder_.restore(keycode) || failed_;
}

bool Listener::isStale(const KeyInput& input) {
  if (clock_.age(input.time, localTime()) <= staleAfter) return false;
  clock_.set(connection_.serverTime(), localTime());
  return clock_.age(input.time, localTime()) > staleAfter;
}

TapVerdict Listener::report(const KeyInput& input, std::int64_t userData) {
  const std::optional<std::uint16_t> virtualKey = map_.virtualKey(input.keycode);
  if (ended_ || !enabled_ || !virtualKey) return TapVerdict::pass;
  const TapEvent event =
      tapEvent(input, *virtualKey, eventFlags(modifiers_, map_.modifiers()), userData);
  if (((mask_ >> static_cast<unsigned>(event.type)) & 1U) == 0) return TapVerdict::pass;
  return callback_(event);
}

void Listener::sendOn(KeyCode keycode, bool down) {
  poster_.key(keycode, down, {Post::Reason::forwarded, 0});
}

}  // namespace vorrin::x11
