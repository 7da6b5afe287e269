#include "platform/linux/input/x11/key_grabs.h"

#include <utility>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin::x11 {

namespace {

void selectEvents(const Connection& connection, xcb_window_t root, Device device,
                  std::uint32_t events) {
  struct {
    xcb_input_event_mask_t head;
    std::uint32_t events;
  } const mask{{device, 1}, events};
  xcb_input_xi_select_events(connection.get(), root, 1, &mask.head);
}

// One that somebody grabs at the moment is attached to no master. A pointer in that state does no
// harm: it has no keys to be taken.
bool isSlaveKeyboard(const xcb_input_xi_device_info_t& info) {
  const bool isSlave = info.type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD ||
                       info.type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE;
  return isSlave && info.enabled != 0;
}

}  // namespace

KeyGrabs::KeyGrabs(const Connection& connection, const KeyboardMap& map)
    : connection_(connection),
      map_(map),
      roots_(connection.roots()),
      modifierStates_(lockStates(map.locks())) {
  selectEvents(connection_, roots_.front(), XCB_INPUT_DEVICE_ALL,
               XCB_INPUT_XI_EVENT_MASK_HIERARCHY);
  findKeyboards();
}

void KeyGrabs::findKeyboards() {
  keyboards_.clear();
  const auto request = xcb_input_xi_query_device(connection_.get(), XCB_INPUT_DEVICE_ALL);
  const auto reply = ownReply(xcb_input_xi_query_device_reply(connection_.get(), request, nullptr));
  if (!reply) return;
  for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem > 0;
       xcb_input_xi_device_info_next(&info)) {
    if (!isSlaveKeyboard(*info.data)) continue;
    keyboards_.push_back(info.data->deviceid);
    // Of the slaves, since the masters' copies wait while another program has frozen the master.
    selectEvents(connection_, roots_.front(), info.data->deviceid,
                 XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
  }
}

bool KeyGrabs::rescan() {
  findKeyboards();
  return areGranted(requestGrabs(held_));  // on the keyboards known before this changes nothing
}

bool KeyGrabs::hold(const KeySet& keys) {
  const auto states = lockStates(map_.locks());
  // What was taken under other states is let go.
  if (states != modifierStates_) ungrab(std::exchange(held_, {}));
  modifierStates_ = states;
  ungrab(std::exchange(held_, held_ & keys) & ~keys);
  const bool granted = areGranted(requestGrabs(keys & ~held_));
  if (!granted) ungrab(keys);
  held_ = granted ? keys : KeySet();
  // Giving a key back has no answer. Without this a press made after the call could still be taken.
  connection_.sync();
  return granted;
}

bool KeyGrabs::canHold(const KeySet& keys) const {
  const KeySet others = keys & ~held_;
  const Requests requests = requestGrabs(others);
  // On its way before the first answer is waited for, so that a key is held for no longer than the
  // server takes from one request to the next.
  ungrab(others);
  return areGranted(requests);
}

void KeyGrabs::endGrabs() const {
  for (const Device device : keyboards_) {
    xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, device);
  }
}

void KeyGrabs::lift(xcb_keycode_t keycode) const {
  ungrab(KeySet().set(keycode));
}

void KeyGrabs::restore(xcb_keycode_t keycode) const {
  for (const auto request : requestGrabs(KeySet().set(keycode))) {
    xcb_discard_reply(connection_.get(), request.sequence);
  }
}

KeyGrabs::Requests KeyGrabs::requestGrabs(const KeySet& keys) const {
  Requests requests;
  forEach(keys, [&](xcb_window_t root, Device device, xcb_keycode_t key) {
    // No raw events: while the grab lasts, its own events tell of the keyboard's keys.
    const std::uint32_t events =
        XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
    requests.push_back(xcb_input_xi_passive_grab_device(
        connection_.get(), XCB_CURRENT_TIME, root, XCB_NONE, key, device, modifierCount(), 1,
        XCB_INPUT_GRAB_TYPE_KEYCODE, XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_GRAB_MODE_ASYNC, 0, &events,
        modifierStates_.data()));
  });
  return requests;
}

bool KeyGrabs::areGranted(const Requests& requests) const {
  bool granted = true;
  for (const auto request : requests) {
    const auto reply =
        ownReply(xcb_input_xi_passive_grab_device_reply(connection_.get(), request, nullptr));
    // A keyboard that is gone by now answers with an error, and the word of that is on its way.
    if (reply && reply->num_modifiers > 0) granted = false;
  }
  return granted;
}

void KeyGrabs::ungrab(const KeySet& keys) const {
  forEach(keys, [this](xcb_window_t root, Device device, xcb_keycode_t key) {
    xcb_input_xi_passive_ungrab_device(connection_.get(), root, key, device, modifierCount(),
                                       XCB_INPUT_GRAB_TYPE_KEYCODE, modifierStates_.data());
  });
}

template <class Use>
void KeyGrabs::forEach(const KeySet& keys, Use use) const {
  for (std::size_t code = 0; code < keys.size(); ++code) {
    if (!keys[code]) continue;
    for (const Device device : keyboards_) {
      for (const auto root : roots_) use(root, device, static_cast<xcb_keycode_t>(code));
    }
  }
}

}  // namespace vorrin::x11
