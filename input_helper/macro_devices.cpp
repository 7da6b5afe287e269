#include "input_helper/macro_devices.h"

#include <array>
#include <span>
#include <utility>

namespace vorrin::input_helper {
namespace {

constexpr int vendor = 0x5652;  // "VR"

Evdev model(const char* name, int product) {
  Evdev device(libevdev_new());
  if (!device) return device;
  libevdev_set_name(device.get(), name);
  libevdev_set_id_bustype(device.get(), BUS_VIRTUAL);
  libevdev_set_id_vendor(device.get(), vendor);
  libevdev_set_id_product(device.get(), product);
  libevdev_set_id_version(device.get(), 1);
  return device;
}

std::optional<MadeDevice> makeKeyboard(Uinput& uinput) {
  const auto device = model("Vorrin keyboard", 1);
  if (!device) return std::nullopt;
  for (unsigned key = helper_protocol::firstDigitKey; key <= helper_protocol::lastDigitKey; ++key) {
    libevdev_enable_event_code(device.get(), EV_KEY, key, nullptr);
  }
  return MadeDevice::create(device.get(), uinput);
}

/// Axes and further buttons are never used: without them some systems see no mouse here.
std::optional<MadeDevice> makePointer(Uinput& uinput) {
  const auto device = model("Vorrin pointer", 2);
  if (!device) return std::nullopt;
  for (const unsigned button : std::array<unsigned, 3>{BTN_LEFT, BTN_RIGHT, BTN_MIDDLE}) {
    libevdev_enable_event_code(device.get(), EV_KEY, button, nullptr);
  }
  for (const unsigned axis : std::array<unsigned, 2>{REL_X, REL_Y}) {
    libevdev_enable_event_code(device.get(), EV_REL, axis, nullptr);
  }
  return MadeDevice::create(device.get(), uinput);
}

}  // namespace

MacroDevices::MacroDevices(MadeDevice keyboard, MadeDevice pointer)
    : keyboard_(std::move(keyboard)), pointer_(std::move(pointer)) {}

std::optional<MacroDevices> MacroDevices::create(Uinput& uinput) {
  auto keyboard = makeKeyboard(uinput);
  auto pointer = makePointer(uinput);
  if (!keyboard || !pointer) return std::nullopt;
  return MacroDevices(std::move(*keyboard), std::move(*pointer));
}

void MacroDevices::post(const helper_protocol::Post& post) {
  for (const auto& [key, down] : std::span(post.keys).first(post.count)) {
    const InputEvent event{EV_KEY, static_cast<std::uint16_t>(key == 0 ? BTN_LEFT : key), down};
    (key == 0 ? pointer_ : keyboard_).write({&event, 1});
  }
}

void MacroDevices::release() {
  keyboard_.release();
  pointer_.release();
}

}  // namespace vorrin::input_helper
