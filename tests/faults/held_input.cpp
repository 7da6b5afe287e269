#include "held_input.h"

#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>

#include <algorithm>
#include <array>
#include <memory>
#include <span>

#include "tests/x11/harness/display.h"

namespace vorrin::faults {

namespace {

using x11_tests::DisplayPointer;

bool isSet(std::span<const char> bits, std::size_t number) {
  return ((static_cast<unsigned char>(bits[number / 8]) >> (number % 8)) & 1U) != 0;
}

void addSet(std::string& text, std::span<const char> bits, const std::string& kind,
            const std::string& device) {
  for (std::size_t number = 0; number < bits.size() * 8; ++number) {
    if (!isSet(bits, number)) continue;
    if (!text.empty()) text += ", ";
    text.append(kind).append(" ").append(std::to_string(number)).append(" of ").append(device);
  }
}

// What a slave device itself holds, which the masters need not show.
void addSlave(std::string& text, Display* display, const XDeviceInfo& info) {
  XDevice* const device = XOpenDevice(display, info.id);
  if (device == nullptr) return;
  if (XDeviceState* const state = XQueryDeviceState(display, device)) {
    XInputClass* part = state->data;
    for (int index = 0; index < state->num_classes; ++index) {
      if (part->c_class == KeyClass) {
        addSet(text, reinterpret_cast<XKeyState*>(part)->keys, "key", info.name);
      } else if (part->c_class == ButtonClass) {
        addSet(text, reinterpret_cast<XButtonState*>(part)->buttons, "button", info.name);
      }
      part = reinterpret_cast<XInputClass*>(reinterpret_cast<char*>(part) + part->length);
    }
    XFreeDeviceState(state);
  }
  XCloseDevice(display, device);
}

void addMasters(std::string& text, Display* display) {
  std::array<char, 32> keys{};
  XQueryKeymap(display, keys.data());
  addSet(text, keys, "key", "the master keyboard");
  int pointer = 0;
  XIGetClientPointer(display, None, &pointer);
  Window window = 0;
  std::array<double, 4> place{};
  XIButtonState buttons{};
  XIModifierState modifiers{};
  XIGroupState group{};
  XIQueryPointer(display, pointer, DefaultRootWindow(display), &window, &window, &place[0],
                 &place[1], &place[2], &place[3], &buttons, &modifiers, &group);
  addSet(text, {reinterpret_cast<char*>(buttons.mask), static_cast<std::size_t>(buttons.mask_len)},
         "button", "the master pointer");
  XFree(buttons.mask);
}

}  // namespace

std::string heldInput(const std::string& display) {
  const DisplayPointer connection = x11_tests::openDisplay(display);
  std::string text;
  addMasters(text, connection.get());
  int count = 0;
  XDeviceInfo* const devices = XListInputDevices(connection.get(), &count);
  for (const XDeviceInfo& info : std::span(devices, static_cast<std::size_t>(count))) {
    if (info.use != IsXKeyboard && info.use != IsXPointer) {
      addSlave(text, connection.get(), info);
    }
  }
  XFreeDeviceList(devices);
  return text;
}

}  // namespace vorrin::faults
