#include "input_helper/device.h"

#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <utility>
#include <vector>

namespace vorrin::input_helper {

MadeDevice::MadeDevice(FileDescriptor uinput, libevdev_uinput* device)
    : uinput_(std::move(uinput)), device_(device) {}

std::optional<MadeDevice> MadeDevice::create(const libevdev* model, FileDescriptor uinput) {
  // libevdev does not hand on the model's place, and it has to be set before the device exists.
  if (::ioctl(uinput.number(), UI_SET_PHYS, ownPlace) != 0) return std::nullopt;
  libevdev_uinput* device = nullptr;
  if (libevdev_uinput_create_from_device(model, uinput.number(), &device) != 0) return std::nullopt;
  return MadeDevice(std::move(uinput), device);
}

void MadeDevice::write(std::span<const InputEvent> frame) const {
  writeFrame(number(), frame);
}

void writeFrame(int descriptor, std::span<const InputEvent> frame) {
  std::vector<input_event> events(frame.size() + 1);  // the last stays zero: SYN_REPORT
  for (std::size_t i = 0; i < frame.size(); ++i) {
    events[i].type = frame[i].type;
    events[i].code = frame[i].code;
    events[i].value = frame[i].value;
  }
  const auto size = events.size() * sizeof(input_event);
  // A device that is gone is noticed where it is read.
  [[maybe_unused]] const auto written = ::write(descriptor, events.data(), size);
}

}  // namespace vorrin::input_helper
