#include "input_helper/macro_devices.h"

#include <initializer_list>
#include <span>
#include <utility>

namespace vorrin::input_helper {
namespace {

constexpr int vendor = 0x5652;  // "VR"

using Codes = std::initializer_list<unsigned>;

std::optional<MadeDevice> make(Uinput& uinput, const char* name, int product, Codes keys,
                               Codes axes) {
  const Evdev model(libevdev_new());
  if (!model) return std::nullopt;
  libevdev_set_name(model.get(), name);
  libevdev_set_id_bustype(model.get(), BUS_VIRTUAL);
  libevdev_set_id_vendor(model.get(), vendor);
  libevdev_set_id_product(model.get(), product);
  libevdev_set_id_version(model.get(), 1);
  for (const auto key : keys) libevdev_enable_event_code(model.get(), EV_KEY, key, nullptr);
  for (const auto axis : axes) libevdev_enable_event_code(model.get(), EV_REL, axis, nullptr);
  return MadeDevice::create(model.get(), uinput);
}

}  // namespace

MacroDevices::MacroDevices(MadeDevice keyboard, MadeDevice pointer)
    : keyboard_(std::move(keyboard)), pointer_(std::move(pointer)) {}

std::optional<MacroDevices> MacroDevices::create(Uinput& uinput) {
  auto keyboard = make(uinput, "Vorrin keyboard", 1,
                       {KEY_1, KEY_2, KEY_3, KEY_4, KEY_5, KEY_6, KEY_7, KEY_8, KEY_9, KEY_0}, {});
  // Axes and further buttons are never used: without them some systems see no mouse here.
  auto pointer =
      make(uinput, "Vorrin pointer", 2, {BTN_LEFT, BTN_RIGHT, BTN_MIDDLE}, {REL_X, REL_Y});
  if (!keyboard || !pointer) return std::nullopt;
  return MacroDevices(std::move(*keyboard), std::move(*pointer));
}

void MacroDevices::post(const helper_protocol::Post& post) {
  for (const auto& [key, down] : std::span(post.keys).first(post.count)) {
    const InputEvent event{EV_KEY, static_cast<std::uint16_t>(key == 0 ? BTN_LEFT : key), down};
    (key == 0 ? pointer_ : keyboard_).write({&event, 1});
  }
}

}  // namespace vorrin::input_helper
