#include "platform/linux/input/x11/keyboard_map.h"

#include <X11/XKBlib.h>
#include <X11/keysym.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <string_view>

#include "platform/linux/input/key_codes.h"

namespace vorrin::x11 {

namespace {

struct KeyboardFree {
  void operator()(XkbDescPtr keyboard) const { XkbFreeKeyboard(keyboard, 0, True); }
};
using Keyboard = std::unique_ptr<XkbDescRec, KeyboardFree>;

struct ModifierMapFree {
  void operator()(XModifierKeymap* map) const { XFreeModifiermap(map); }
};
using ModifierMap = std::unique_ptr<XModifierKeymap, ModifierMapFree>;

struct XFreeDeleter {
  void operator()(void* memory) const { XFree(memory); }
};

void addMeaning(ModifierMasks& masks, KeySym symbol, unsigned bit) {
  switch (symbol) {
    case XK_Alt_L:
    case XK_Alt_R:
    case XK_Meta_L:
    case XK_Meta_R:
    case XK_ISO_Level3_Shift:
    case XK_Mode_switch:
      masks.alternate |= bit;
      break;
    case XK_Super_L:
    case XK_Super_R:
      masks.command |= bit;
      break;
    case XK_Num_Lock:
      masks.numLock |= bit;
      break;
    case XK_Scroll_Lock:
      masks.scrollLock |= bit;
      break;
    default:
      break;
  }
}

}  // namespace

void KeyboardMap::read(Display* display) {
  readNames(display);
  readModifiers(display);
}

std::optional<std::uint16_t> KeyboardMap::virtualKey(unsigned keycode) const {
  return keycode < virtualKeys_.size() ? virtualKeys_[keycode] : std::nullopt;
}

KeyCode KeyboardMap::keycode(std::uint16_t virtualKey) const {
  const auto found = std::ranges::find(virtualKeys_, std::optional(virtualKey));
  return found == virtualKeys_.end() ? KeyCode{0}
                                     : static_cast<KeyCode>(found - virtualKeys_.begin());
}

void KeyboardMap::readNames(Display* display) {
  const Keyboard keyboard(XkbGetMap(display, 0, XkbUseCoreKbd));
  if (!keyboard) return;
  if (XkbGetNames(display, XkbKeyNamesMask, keyboard.get()) != Success) return;
  if (keyboard->names == nullptr || keyboard->names->keys == nullptr) return;
  virtualKeys_.fill(std::nullopt);
  for (unsigned code = keyboard->min_key_code; code <= keyboard->max_key_code; ++code) {
    const char* const name = keyboard->names->keys[code].name;  // not terminated when full
    virtualKeys_[code] =
        virtualKeyOfXkbName(std::string_view(name, strnlen(name, XkbKeyNameLength)));
  }
}

void KeyboardMap::readModifiers(Display* display) {
  // Asked of the server each time: Xlib's own copy is renewed only by events that nobody hands it.
  int first = 0;
  int last = 0;
  XDisplayKeycodes(display, &first, &last);
  int width = 0;
  const std::unique_ptr<KeySym, XFreeDeleter> symbols(
      XGetKeyboardMapping(display, static_cast<KeyCode>(first), last - first + 1, &width));
  const ModifierMap map(XGetModifierMapping(display));
  if (!symbols || !map) return;
  modifiers_ = {};
  for (int modifier = Mod1MapIndex; modifier <= Mod5MapIndex; ++modifier) {
    for (int slot = 0; slot < map->max_keypermod; ++slot) {
      const int code = map->modifiermap[modifier * map->max_keypermod + slot];
      if (code < first || code > last) continue;
      const KeySym* const row = symbols.get() + static_cast<std::ptrdiff_t>(code - first) * width;
      for (int column = 0; column < width; ++column)
        addMeaning(modifiers_, row[column], 1U << modifier);
    }
  }
}

}  // namespace vorrin::x11
