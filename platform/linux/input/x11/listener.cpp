#include "platform/linux/input/x11/listener.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XKBproto.h>

namespace vorrin::x11 {

Listener::Listener(Connection& connection, Poster& poster, KeyboardMap& map, std::uint64_t mask,
                   EventTap::Callback callback)
    : connection_(connection),
      poster_(poster),
      map_(map),
      mask_(mask),
      callback_(callback),
      holder_(connection),
      flow_(connection, poster, holder_, map,
            [this](const TapEvent& event) { return judge(event); }) {
  selectEvents(true);
  readKeyboardMap();
  XkbStateRec state{};
  if (XkbGetState(connection_.display(), XkbUseCoreKbd, &state) == Success) modifiers_ = state.mods;
}

Listener::~Listener() {
  end();
}

bool Listener::claim(std::span<const std::uint16_t> virtualKeys) {
  if (ended_ || connection_.lost()) return false;
  const std::vector<std::uint16_t> keys(virtualKeys.begin(), virtualKeys.end());
  if (keys == chosen_) return true;
  chosen_ = keys;
  if (holdChosenKeys()) return true;
  chosen_.clear();
  return false;
}

bool Listener::canClaim(std::span<const std::uint16_t> virtualKeys) {
  const std::vector<std::uint16_t> former = chosen_;
  const bool granted = claim(virtualKeys);
  return claim(former) && granted;
}

void Listener::setEnabled(bool enabled) {
  if (ended_ || connection_.lost()) return;
  // Marks in the stream of events where the tap begins to see them.
  if (enabled && !enabled_) {
    flow_.showFrom(NextRequest(connection_.display()));
    XNoOp(connection_.display());
  }
  enabled_ = enabled;
  failed_ = !holdChosenKeys() || failed_;
}

void Listener::end() {
  if (ended_) return;
  ended_ = true;
  if (connection_.lost()) return;
  holder_.release();
  waitForServer();
  takeUpLastKeys();
  for (WatchedKeyboard& keyboard : holder_.keyboards()) flow_.leave(keyboard);
  selectEvents(false);
  waitForServer();
}

void Listener::handle(XEvent& event) {
  if (ended_) return;
  if (event.type == connection_.xkbEventBase()) return handleXkb(event);
  if (event.type == MappingNotify) return readKeyboardMap();
  handleInput(event);
}

// The release of a key that was cut off by a shortcut a moment ago reaches nobody but us. Left
// unread, the key would stay down for other programs.
void Listener::takeUpLastKeys() {
  while (!connection_.lost() && XPending(connection_.display()) > 0) {
    XEvent event;
    XNextEvent(connection_.display(), &event);
    if (!connection_.lost()) handleInput(event);
  }
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
  waitForServer();
  return granted;
}

// Giving a key back has no answer. Without this a press made after the call could still be held.
void Listener::waitForServer() {
  if (!connection_.lost()) XSync(connection_.display(), False);
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

void Listener::handleInput(XEvent& event) {
  if (event.type != GenericEvent || event.xcookie.extension != connection_.inputOpcode()) return;
  if (XGetEventData(connection_.display(), &event.xcookie) == 0) return;
  handleInput(event.xcookie);
  XFreeEventData(connection_.display(), &event.xcookie);  // its own memory: needs no server
}

void Listener::handleInput(const XGenericEventCookie& cookie) {
  switch (cookie.evtype) {
    case XI_HierarchyChanged:
      rescanKeyboards();
      break;
    case XI_RawKeyPress:
    case XI_RawKeyRelease: {
      const KeyInput input = keyInput(*static_cast<const XIRawEvent*>(cookie.data));
      if (!isOfSlave(input)) break;
      input.down ? flow_.rawPress(input, modifiers_) : flow_.rawRelease(input, modifiers_);
      break;
    }
    case XI_KeyPress:
      flow_.heldPress(keyInput(*static_cast<const XIDeviceEvent*>(cookie.data)), modifiers_);
      break;
    case XI_KeyRelease:
      flow_.heldRelease(keyInput(*static_cast<const XIDeviceEvent*>(cookie.data)));
      break;
    default:
      break;
  }
}

void Listener::rescanKeyboards() {
  std::vector<WatchedKeyboard> gone;
  failed_ = !holder_.rescan(gone) || failed_;
  for (WatchedKeyboard& keyboard : gone) flow_.leave(keyboard);
  failed_ = !holder_.settle() || failed_;
  poster_.flush();
}

TapVerdict Listener::judge(const TapEvent& event) const {
  const bool isAsked = ((mask_ >> static_cast<unsigned>(event.type)) & 1U) != 0;
  return isAsked && enabled_ && !ended_ ? callback_(event) : TapVerdict::pass;
}

}  // namespace vorrin::x11
