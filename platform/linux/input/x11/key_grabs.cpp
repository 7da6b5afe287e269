#include "platform/linux/input/x11/key_grabs.h"

#include <algorithm>
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

xcb_input_xi_passive_grab_device_cookie_t grabKey(const Connection& connection, xcb_window_t root,
                                                  Device device, xcb_keycode_t keycode,
                                                  const std::vector<std::uint32_t>& modifiers) {
  // No raw events: while the grab lasts, its own events tell of the keyboard's keys.
  const std::uint32_t events =
      XCB_INPUT_XI_EVENT_MASK_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_KEY_RELEASE;
  return xcb_input_xi_passive_grab_device(
      connection.get(), XCB_CURRENT_TIME, root, XCB_NONE, keycode, device,
      static_cast<std::uint16_t>(modifiers.size()), 1, XCB_INPUT_GRAB_TYPE_KEYCODE,
      XCB_INPUT_GRAB_MODE_22_ASYNC, XCB_GRAB_MODE_ASYNC, 0, &events, modifiers.data());
}

void ungrabKey(const Connection& connection, xcb_window_t root, Device device,
               xcb_keycode_t keycode, const std::vector<std::uint32_t>& modifiers) {
  xcb_input_xi_passive_ungrab_device(connection.get(), root, keycode, device,
                                     static_cast<std::uint16_t>(modifiers.size()),
                                     XCB_INPUT_GRAB_TYPE_KEYCODE, modifiers.data());
}

bool hasKeys(const xcb_input_xi_device_info_t& info) {
  for (auto entry = xcb_input_xi_device_info_classes_iterator(&info); entry.rem > 0;
       xcb_input_device_class_next(&entry)) {
    if (entry.data->type == XCB_INPUT_DEVICE_CLASS_TYPE_KEY) return true;
  }
  return false;
}

// One that somebody grabs at the moment is attached to no master.
bool isSlaveKeyboard(const xcb_input_xi_device_info_t& info) {
  const bool isSlave = info.type == XCB_INPUT_DEVICE_TYPE_SLAVE_KEYBOARD ||
                       info.type == XCB_INPUT_DEVICE_TYPE_FLOATING_SLAVE;
  return isSlave && info.enabled != 0 && hasKeys(info);
}

// The server marks the devices it keeps for XTEST with this property.
bool isXtest(const Connection& connection, Device device, xcb_atom_t property) {
  const auto request =
      xcb_input_xi_get_property(connection.get(), device, 0, property, XCB_ATOM_INTEGER, 0, 1);
  const auto reply = ownReply(xcb_input_xi_get_property_reply(connection.get(), request, nullptr));
  return reply && reply->format == 8 && reply->num_items == 1 &&
         *static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(reply.get())) != 0;
}

template <class Use>
void forEachKey(const KeySet& keys, Use use) {
  for (std::size_t code = 0; code < keys.size(); ++code) {
    if (keys[code]) use(static_cast<xcb_keycode_t>(code));
  }
}

}  // namespace

KeyGrabs::KeyGrabs(const Connection& connection)
    : connection_(connection), roots_(connection.roots()) {
  selectEvents(connection_, roots_.front(), XCB_INPUT_DEVICE_ALL,
               XCB_INPUT_XI_EVENT_MASK_HIERARCHY);
  findKeyboards();
}

void KeyGrabs::findKeyboards() {
  keyboards_.clear();
  const auto property = xcbAtom(connection_.get(), "XTEST Device");
  const auto request = xcb_input_xi_query_device(connection_.get(), XCB_INPUT_DEVICE_ALL);
  const auto reply = ownReply(xcb_input_xi_query_device_reply(connection_.get(), request, nullptr));
  if (!reply) return;
  for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem > 0;
       xcb_input_xi_device_info_next(&info)) {
    const Device device = info.data->deviceid;
    if (!isSlaveKeyboard(*info.data)) continue;
    keyboards_.push_back({device, isXtest(connection_, device, property)});
    // Of the slaves, since the masters' copies wait while another program has frozen the master.
    selectEvents(connection_, roots_.front(), device,
                 XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_KEY_RELEASE);
  }
}

bool KeyGrabs::rescan() {
  findKeyboards();
  return grab(held_);  // on the keyboards known before this changes nothing
}

bool KeyGrabs::isThere(Device device) const {
  return std::ranges::find(keyboards_, device, &SlaveKeyboard::device) != keyboards_.end();
}

bool KeyGrabs::hold(const KeySet& keys) {
  ungrab(std::exchange(held_, held_ & keys) & ~keys);
  const bool granted = grab(keys & ~held_);
  if (!granted) ungrab(keys);
  held_ = granted ? keys : KeySet();
  // Giving a key back has no answer. Without this a press made after the call could still be taken.
  connection_.sync();
  return granted;
}

bool KeyGrabs::canHold(const KeySet& keys) const {
  const bool granted = grab(keys & ~held_);
  ungrab(keys & ~held_);
  connection_.flush();
  return granted;
}

void KeyGrabs::setModifierStates(const std::vector<std::uint32_t>& states) {
  if (states == modifierStates_) return;
  ungrab(std::exchange(held_, {}));
  modifierStates_ = states;
}

void KeyGrabs::end(Device device) const {
  xcb_input_xi_ungrab_device(connection_.get(), XCB_CURRENT_TIME, device);
}

template <class Use>
void KeyGrabs::forEachXtest(Use use) const {
  for (const SlaveKeyboard& keyboard : keyboards_) {
    if (keyboard.isXtest) use(keyboard.device);
  }
}

void KeyGrabs::endOfXtest() const {
  forEachXtest([this](Device device) { end(device); });
}

void KeyGrabs::lift(xcb_keycode_t keycode) const {
  forEachXtest([&](Device device) {
    for (const auto root : roots_) ungrabKey(connection_, root, device, keycode, modifierStates_);
  });
}

void KeyGrabs::restore(xcb_keycode_t keycode) const {
  forEachXtest([&](Device device) {
    for (const auto root : roots_) {
      const auto request = grabKey(connection_, root, device, keycode, modifierStates_);
      xcb_discard_reply(connection_.get(), request.sequence);
    }
  });
}

bool KeyGrabs::grab(const KeySet& keys) const {
  std::vector<xcb_input_xi_passive_grab_device_cookie_t> requests;
  for (const SlaveKeyboard& keyboard : keyboards_) {
    forEachKey(keys, [&](xcb_keycode_t key) {
      for (const auto root : roots_) {
        requests.push_back(grabKey(connection_, root, keyboard.device, key, modifierStates_));
      }
    });
  }
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
  for (const SlaveKeyboard& keyboard : keyboards_) {
    forEachKey(keys, [&](xcb_keycode_t key) {
      for (const auto root : roots_) {
        ungrabKey(connection_, root, keyboard.device, key, modifierStates_);
      }
    });
  }
}

}  // namespace vorrin::x11
