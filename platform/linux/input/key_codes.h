#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vorrin {

/// One key position under the three names that systems have for it. None of them depends on the
/// keyboard layout.
struct KeyNames {
  std::uint16_t virtualKey;  ///< macOS virtual key code
  std::uint16_t evdev;       ///< the kernel's code; X servers fed by the kernel add 8
  std::string_view xkb;      ///< the name that XKB keymaps give the position
};

/// Every key that Vorrin tells apart. Modifier and lock keys are left out: on macOS they make no
/// key-down and key-up events but show in the flags of other events.
inline constexpr std::array keyTable{
    KeyNames{0x32, KEY_GRAVE, "TLDE"},      KeyNames{0x12, KEY_1, "AE01"},
    KeyNames{0x13, KEY_2, "AE02"},          KeyNames{0x14, KEY_3, "AE03"},
    KeyNames{0x15, KEY_4, "AE04"},          KeyNames{0x17, KEY_5, "AE05"},
    KeyNames{0x16, KEY_6, "AE06"},          KeyNames{0x1A, KEY_7, "AE07"},
    KeyNames{0x1C, KEY_8, "AE08"},          KeyNames{0x19, KEY_9, "AE09"},
    KeyNames{0x1D, KEY_0, "AE10"},          KeyNames{0x1B, KEY_MINUS, "AE11"},
    KeyNames{0x18, KEY_EQUAL, "AE12"},      KeyNames{0x5D, KEY_YEN, "AE13"},
    KeyNames{0x33, KEY_BACKSPACE, "BKSP"},  KeyNames{0x30, KEY_TAB, "TAB"},
    KeyNames{0x0C, KEY_Q, "AD01"},          KeyNames{0x0D, KEY_W, "AD02"},
    KeyNames{0x0E, KEY_E, "AD03"},          KeyNames{0x0F, KEY_R, "AD04"},
    KeyNames{0x11, KEY_T, "AD05"},          KeyNames{0x10, KEY_Y, "AD06"},
    KeyNames{0x20, KEY_U, "AD07"},          KeyNames{0x22, KEY_I, "AD08"},
    KeyNames{0x1F, KEY_O, "AD09"},          KeyNames{0x23, KEY_P, "AD10"},
    KeyNames{0x21, KEY_LEFTBRACE, "AD11"},  KeyNames{0x1E, KEY_RIGHTBRACE, "AD12"},
    KeyNames{0x24, KEY_ENTER, "RTRN"},      KeyNames{0x00, KEY_A, "AC01"},
    KeyNames{0x01, KEY_S, "AC02"},          KeyNames{0x02, KEY_D, "AC03"},
    KeyNames{0x03, KEY_F, "AC04"},          KeyNames{0x05, KEY_G, "AC05"},
    KeyNames{0x04, KEY_H, "AC06"},          KeyNames{0x26, KEY_J, "AC07"},
    KeyNames{0x28, KEY_K, "AC08"},          KeyNames{0x25, KEY_L, "AC09"},
    KeyNames{0x29, KEY_SEMICOLON, "AC10"},  KeyNames{0x27, KEY_APOSTROPHE, "AC11"},
    KeyNames{0x2A, KEY_BACKSLASH, "BKSL"},  KeyNames{0x0A, KEY_102ND, "LSGT"},
    KeyNames{0x06, KEY_Z, "AB01"},          KeyNames{0x07, KEY_X, "AB02"},
    KeyNames{0x08, KEY_C, "AB03"},          KeyNames{0x09, KEY_V, "AB04"},
    KeyNames{0x0B, KEY_B, "AB05"},          KeyNames{0x2D, KEY_N, "AB06"},
    KeyNames{0x2E, KEY_M, "AB07"},          KeyNames{0x2B, KEY_COMMA, "AB08"},
    KeyNames{0x2F, KEY_DOT, "AB09"},        KeyNames{0x2C, KEY_SLASH, "AB10"},
    KeyNames{0x5E, KEY_RO, "AB11"},         KeyNames{0x31, KEY_SPACE, "SPCE"},
    KeyNames{0x35, KEY_ESC, "ESC"},         KeyNames{0x7A, KEY_F1, "FK01"},
    KeyNames{0x78, KEY_F2, "FK02"},         KeyNames{0x63, KEY_F3, "FK03"},
    KeyNames{0x76, KEY_F4, "FK04"},         KeyNames{0x60, KEY_F5, "FK05"},
    KeyNames{0x61, KEY_F6, "FK06"},         KeyNames{0x62, KEY_F7, "FK07"},
    KeyNames{0x64, KEY_F8, "FK08"},         KeyNames{0x65, KEY_F9, "FK09"},
    KeyNames{0x6D, KEY_F10, "FK10"},        KeyNames{0x67, KEY_F11, "FK11"},
    KeyNames{0x6F, KEY_F12, "FK12"},        KeyNames{0x69, KEY_F13, "FK13"},
    KeyNames{0x6B, KEY_F14, "FK14"},        KeyNames{0x71, KEY_F15, "FK15"},
    KeyNames{0x6A, KEY_F16, "FK16"},        KeyNames{0x40, KEY_F17, "FK17"},
    KeyNames{0x4F, KEY_F18, "FK18"},        KeyNames{0x50, KEY_F19, "FK19"},
    KeyNames{0x5A, KEY_F20, "FK20"},        KeyNames{0x72, KEY_INSERT, "INS"},
    KeyNames{0x73, KEY_HOME, "HOME"},       KeyNames{0x74, KEY_PAGEUP, "PGUP"},
    KeyNames{0x75, KEY_DELETE, "DELE"},     KeyNames{0x77, KEY_END, "END"},
    KeyNames{0x79, KEY_PAGEDOWN, "PGDN"},   KeyNames{0x7E, KEY_UP, "UP"},
    KeyNames{0x7B, KEY_LEFT, "LEFT"},       KeyNames{0x7D, KEY_DOWN, "DOWN"},
    KeyNames{0x7C, KEY_RIGHT, "RGHT"},      KeyNames{0x4B, KEY_KPSLASH, "KPDV"},
    KeyNames{0x43, KEY_KPASTERISK, "KPMU"}, KeyNames{0x4E, KEY_KPMINUS, "KPSU"},
    KeyNames{0x45, KEY_KPPLUS, "KPAD"},     KeyNames{0x4C, KEY_KPENTER, "KPEN"},
    KeyNames{0x51, KEY_KPEQUAL, "KPEQ"},    KeyNames{0x41, KEY_KPDOT, "KPDL"},
    KeyNames{0x52, KEY_KP0, "KP0"},         KeyNames{0x53, KEY_KP1, "KP1"},
    KeyNames{0x54, KEY_KP2, "KP2"},         KeyNames{0x55, KEY_KP3, "KP3"},
    KeyNames{0x56, KEY_KP4, "KP4"},         KeyNames{0x57, KEY_KP5, "KP5"},
    KeyNames{0x58, KEY_KP6, "KP6"},         KeyNames{0x59, KEY_KP7, "KP7"},
    KeyNames{0x5B, KEY_KP8, "KP8"},         KeyNames{0x5C, KEY_KP9, "KP9"},
};

/// The kernel's code of the key that macOS calls `virtualKey`; nothing outside `keyTable`.
constexpr std::optional<std::uint16_t> evdevCode(std::uint16_t virtualKey) {
  for (const KeyNames& key : keyTable) {
    if (key.virtualKey == virtualKey) return key.evdev;
  }
  return std::nullopt;
}

/// The macOS virtual key code of the kernel's `evdev`; nothing outside `keyTable`.
constexpr std::optional<std::uint16_t> virtualKeyOfEvdev(std::uint16_t evdev) {
  for (const KeyNames& key : keyTable) {
    if (key.evdev == evdev) return key.virtualKey;
  }
  return std::nullopt;
}

/// The macOS virtual key code of the position that XKB calls `name`; nothing outside `keyTable`.
constexpr std::optional<std::uint16_t> virtualKeyOfXkbName(std::string_view name) {
  for (const KeyNames& key : keyTable) {
    if (key.xkb == name) return key.virtualKey;
  }
  return std::nullopt;
}

}  // namespace vorrin
