#include "input_helper/macro_devices.h"

#include <array>
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

std::optional<MadeDevice> makeKeyboard(FileDescriptor uinput) {
  const auto device = model("Vorrin keyboard", 1);
  if (!device || !uinput.isOpen()) return std::nullopt;
  for (unsigned key = helper_protocol::firstDigitKey; key <= helper_protocol::lastDigitKey; ++key) {
    libevdev_enable_event_code(device.get(), EV_KEY, key, nullptr);
  }
  return MadeDevice::create(device.get(), std::move(uinput));
}

/// Axes and further buttons are never used: without them some systems see no mouse here.
std::optional<MadeDevice> makePointer(FileDescriptor uinput) {
  const auto device = model("Vorrin pointer", 2);
  if (!device || !uinput.isOpen()) return std::nullopt;
  for (const unsigned button : std::array<unsigned, 3>{BTN_LEFT, BTN_RIGHT, BTN_MIDDLE}) {
    libevdev_enable_event_code(device.get(), EV_KEY, button, nullptr);
  }
  for (const unsigned axis : std::array<unsigned, 2>{REL_X, REL_Y}) {
    libevdev_enable_event_code(device.get(), EV_REL, axis, nullptr);
  }
  return MadeDevice::create(device.get(), std::move(uinput));
}

}  // namespace

MacroDevices::MacroDevices(MadeDevice keyboard, MadeDevice pointer)
    : keyboard_(std::move(keyboard)), pointer_(std::move(pointer)) {}

std::optional<MacroDevices> MacroDevices::create(
    const std::function<FileDescriptor()>& openUinput) {
  auto keyboard = makeKeyboard(openUinput());
  auto pointer = makePointer(openUinput());
  if (!keyboard || !pointer) return std::nullopt;
  return MacroDevices(std::move(*keyboard), std::move(*pointer));
}

void MacroDevices::set(std::uint16_t key, bool down) {
  const InputEvent event{EV_KEY, key, down ? 1 : 0};
  (key == BTN_LEFT ? pointer_ : keyboard_).write({&event, 1});
  down_.set(key, down);
}

void MacroDevices::post(const helper_protocol::Post& post) {
  for (std::size_t i = 0; i < post.count; ++i) {
    const auto key = post.keys[i].key;
    set(key == 0 ? std::uint16_t{BTN_LEFT} : key, post.keys[i].down);
  }
}

void MacroDevices::release() {
  for (std::uint16_t key = 0; down_.any() && key < KEY_CNT; ++key) {
    if (down_.test(key)) set(key, false);
  }
}

}  // namespace vorrin::input_helper
