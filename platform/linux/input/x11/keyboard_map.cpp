#include "platform/linux/input/x11/keyboard_map.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <span>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/foundation/xcb_xkb.h"
#include "platform/linux/input/key_codes.h"

namespace vorrin::x11 {

namespace {

/// Calls `use` with every symbol that the key can have.
template <class Use>
void forEachSymbol(xkb_keymap* map, xkb_keycode_t key, Use use) {
  for (xkb_layout_index_t layout = 0; layout < xkb_keymap_num_layouts_for_key(map, key); ++layout) {
    const auto levels = xkb_keymap_num_levels_for_key(map, key, layout);
    for (xkb_level_index_t level = 0; level < levels; ++level) {
      const xkb_keysym_t* symbols = nullptr;
      const int count = xkb_keymap_key_get_syms_by_level(map, key, layout, level, &symbols);
      for (const auto symbol : std::span(symbols, static_cast<std::size_t>(count))) use(symbol);
    }
  }
}

}  // namespace

std::vector<std::uint32_t> lockStates(unsigned locks) {
  std::vector<std::uint32_t> states;
  // Counts down through the subsets of `locks`, which are its bits after a borrow masked out.
  for (unsigned subset = locks; subset != 0; subset = (subset - 1) & locks) {
    states.push_back(subset);
  }
  states.push_back(0);
  return states;
}

KeyboardMap::KeyboardMap(const Connection& connection)
    : connection_(connection), context_(xkb_context_new(XKB_CONTEXT_NO_FLAGS)) {
  selectEvents();
  read();
}

void KeyboardMap::selectEvents() const {
  constexpr std::uint16_t maps = XCB_XKB_EVENT_TYPE_NEW_KEYBOARD_NOTIFY |
                                 XCB_XKB_EVENT_TYPE_MAP_NOTIFY | XCB_XKB_EVENT_TYPE_NAMES_NOTIFY;
  constexpr std::uint16_t allMapParts = 0xFF;
  // Each part is named because the server tells of a change only if a selected part changed, and
  // the whole state is read from what it tells.
  constexpr std::uint16_t state =
      XCB_XKB_STATE_PART_MODIFIER_STATE | XCB_XKB_STATE_PART_MODIFIER_BASE |
      XCB_XKB_STATE_PART_MODIFIER_LATCH | XCB_XKB_STATE_PART_MODIFIER_LOCK |
      XCB_XKB_STATE_PART_GROUP_STATE | XCB_XKB_STATE_PART_GROUP_BASE |
      XCB_XKB_STATE_PART_GROUP_LATCH | XCB_XKB_STATE_PART_GROUP_LOCK;
  xcb_xkb_select_events_details_t details{};
  details.affectState = state;
  details.stateDetails = state;
  xcb_xkb_select_events_aux(connection_.get(), XCB_XKB_ID_USE_CORE_KBD,
                            maps | XCB_XKB_EVENT_TYPE_STATE_NOTIFY, 0, maps, allMapParts,
                            allMapParts, &details);
}

bool KeyboardMap::follow(const xcb_generic_event_t& event) {
  switch (event.pad0) {  // where XKB has its own type
    case XCB_XKB_STATE_NOTIFY: {
      const auto& now = reinterpret_cast<const xcb_xkb_state_notify_event_t&>(event);
      if (state_)
        xkb_state_update_mask(state_.get(), now.baseMods, now.latchedMods, now.lockedMods,
                              static_cast<xkb_layout_index_t>(now.baseGroup),
                              static_cast<xkb_layout_index_t>(now.latchedGroup), now.lockedGroup);
      return true;
    }
    case XCB_XKB_NEW_KEYBOARD_NOTIFY:
      // Each time another keyboard is typed on, the core keyboard takes over its map, which the
      // server announces like this. Those maps agree in all that is read here.
      return reinterpret_cast<const xcb_xkb_new_keyboard_notify_event_t&>(event).requestMinor ==
             XCB_XKB_SET_MAP;
    case XCB_XKB_MAP_NOTIFY:
    case XCB_XKB_NAMES_NOTIFY:
      return false;
    default:
      return true;
  }
}

void KeyboardMap::read() {
  const auto device = xkb_x11_get_core_keyboard_device_id(connection_.get());
  Reference<xkb_keymap> map(xkb_x11_keymap_new_from_device(context_.get(), connection_.get(),
                                                           device, XKB_KEYMAP_COMPILE_NO_FLAGS));
  if (!map) return;
  Reference<xkb_state> state(xkb_x11_state_new_from_device(map.get(), connection_.get(), device));
  if (!state) return;
  map_ = std::move(map);
  state_ = std::move(state);
  findKeys();
  findEscapes();
  findLocks();
}

xcb_keycode_t KeyboardMap::keycode(std::uint16_t virtualKey) const {
  return virtualKey < keycodes_.size() ? keycodes_[virtualKey] : xcb_keycode_t{0};
}

bool KeyboardMap::isEscape(xcb_keycode_t keycode) const {
  if (!escapes_[keycode]) return false;
  return keycode == this->keycode(escapeKey) ||
         xkb_state_key_get_one_sym(state_.get(), keycode) == XKB_KEY_Escape;
}

unsigned KeyboardMap::modifiers() const {
  constexpr unsigned real = 0xFF;
  return xkb_state_serialize_mods(state_.get(), XKB_STATE_MODS_EFFECTIVE) & real;
}

void KeyboardMap::findKeys() {
  for (const KeyNames& key : keyTable) {
    const auto code = xkb_keymap_key_by_name(map_.get(), key.xkb);
    keycodes_.at(key.virtualKey) =
        code == XKB_KEYCODE_INVALID ? xcb_keycode_t{0} : static_cast<xcb_keycode_t>(code);
  }
}

void KeyboardMap::findEscapes() {
  escapes_.reset();
  for (std::size_t code = 0; code < escapes_.size(); ++code) {
    forEachSymbol(map_.get(), static_cast<xkb_keycode_t>(code), [&](xkb_keysym_t symbol) {
      if (symbol == XKB_KEY_Escape) escapes_.set(code);
    });
  }
  if (const auto position = keycode(escapeKey)) escapes_.set(position);
}

void KeyboardMap::findLocks() {
  const auto request = xcb_get_modifier_mapping(connection_.get());
  const auto reply = ownReply(xcb_get_modifier_mapping_reply(connection_.get(), request, nullptr));
  if (!reply) return;
  locks_ = XCB_MOD_MASK_LOCK;
  const std::size_t width = reply->keycodes_per_modifier;
  const std::span keys(xcb_get_modifier_mapping_keycodes(reply.get()), 8 * width);
  for (std::size_t modifier = XCB_MAP_INDEX_1; modifier <= XCB_MAP_INDEX_5; ++modifier) {
    for (const auto key : keys.subspan(modifier * width, width)) {
      forEachSymbol(map_.get(), key, [&](xkb_keysym_t symbol) {
        const bool isLock = symbol == XKB_KEY_Num_Lock || symbol == XKB_KEY_Scroll_Lock;
        if (isLock) locks_ |= 1U << modifier;
      });
    }
  }
}

}  // namespace vorrin::x11
