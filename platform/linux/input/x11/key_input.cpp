#include "platform/linux/input/x11/key_input.h"

namespace vorrin::x11 {

KeyInput keyInput(const XIRawEvent& event) {
  return {.device = event.deviceid,
          .source = event.sourceid,
          .keycode = static_cast<unsigned>(event.detail),
          .down = event.evtype == XI_RawKeyPress,
          .repeat = false,
          .serial = event.serial,
          .time = static_cast<std::uint32_t>(event.time)};
}

KeyInput keyInput(const XIDeviceEvent& event) {
  return {.device = event.deviceid,
          .source = event.sourceid,
          .keycode = static_cast<unsigned>(event.detail),
          .down = event.evtype == XI_KeyPress,
          .repeat = (event.flags & XIKeyRepeat) != 0,
          .serial = event.serial,
          .time = static_cast<std::uint32_t>(event.time)};
}

bool isOfSlave(const KeyInput& input) {
  return input.device == input.source;
}

TapEvent tapEvent(const KeyInput& input, std::uint16_t virtualKey, std::uint64_t flags,
                  std::int64_t userData) {
  return {.type = input.down ? EventType::keyDown : EventType::keyUp,
          .keyCode = virtualKey,
          .autorepeat = input.repeat ? 1 : 0,
          .flags = flags,
          .userData = userData};
}

}  // namespace vorrin::x11
