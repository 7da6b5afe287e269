#pragma once

#include <linux/input-event-codes.h>

#include <array>
#include <cstdint>
#include <stdexcept>
#include <utility>

#include "platform/linux/input/key_codes.h"

namespace vorrin::x11_tests {

/// Keys that only tests press, by their macOS virtual key codes and the kernel's.
inline constexpr std::array<std::pair<std::uint16_t, std::uint16_t>, 32> otherKeys{{
    {0x00, KEY_A},  {0x0B, KEY_B},     {0x08, KEY_C},   {0x02, KEY_D},     {0x0E, KEY_E},
    {0x03, KEY_F},  {0x05, KEY_G},     {0x04, KEY_H},   {0x22, KEY_I},     {0x26, KEY_J},
    {0x28, KEY_K},  {0x25, KEY_L},     {0x2E, KEY_M},   {0x2D, KEY_N},     {0x1F, KEY_O},
    {0x23, KEY_P},  {0x0C, KEY_Q},     {0x0F, KEY_R},   {0x01, KEY_S},     {0x11, KEY_T},
    {0x20, KEY_U},  {0x09, KEY_V},     {0x0D, KEY_W},   {0x07, KEY_X},     {0x10, KEY_Y},
    {0x06, KEY_Z},  {0x31, KEY_SPACE}, {0x2F, KEY_DOT}, {0x24, KEY_ENTER}, {0x7D, KEY_DOWN},
    {0x7E, KEY_UP}, {0x6F, KEY_F12},
}};

/// The kernel's code of a macOS virtual key code.
constexpr std::uint16_t evdevOf(std::uint16_t virtualKey) {
  if (const auto code = evdevCode(virtualKey)) return *code;
  for (const auto& [key, evdev] : otherKeys) {
    if (key == virtualKey) return evdev;
  }
  throw std::runtime_error("no such key");
}

}  // namespace vorrin::x11_tests
