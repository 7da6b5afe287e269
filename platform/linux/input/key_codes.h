#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstdint>
#include <optional>

namespace vorrin {

/// One key position under the three names that systems have for it. None of them depends on the
/// keyboard layout.
struct KeyNames {
  std::uint16_t virtualKey;  ///< macOS virtual key code
  std::uint16_t evdev;       ///< the kernel's code; X servers fed by the kernel add 8
  const char* xkb;           ///< the name that XKB keymaps give the position
};

/// Every key that Vorrin presses or listens to: the six that may be shortcuts, Escape, the digits.
inline constexpr std::array keyTable{
    KeyNames{0x32, KEY_GRAVE, "TLDE"}, KeyNames{0x30, KEY_TAB, "TAB"},
    KeyNames{0x61, KEY_F6, "FK06"},    KeyNames{0x62, KEY_F7, "FK07"},
    KeyNames{0x64, KEY_F8, "FK08"},    KeyNames{0x65, KEY_F9, "FK09"},
    KeyNames{0x35, KEY_ESC, "ESC"},    KeyNames{0x12, KEY_1, "AE01"},
    KeyNames{0x13, KEY_2, "AE02"},     KeyNames{0x14, KEY_3, "AE03"},
    KeyNames{0x15, KEY_4, "AE04"},     KeyNames{0x17, KEY_5, "AE05"},
    KeyNames{0x16, KEY_6, "AE06"},     KeyNames{0x1A, KEY_7, "AE07"},
    KeyNames{0x1C, KEY_8, "AE08"},     KeyNames{0x19, KEY_9, "AE09"},
    KeyNames{0x1D, KEY_0, "AE10"},
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

}  // namespace vorrin
