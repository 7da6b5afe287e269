#include "input_helper/device.h"

#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <utility>
#include <vector>

namespace vorrin::input_helper {

MadeDevice::MadeDevice(Uinput& uinput, FileDescriptor descriptor, libevdev_uinput* device)
    : uinput_(&uinput), descriptor_(std::move(descriptor)), device_(device) {}

MadeDevice::~MadeDevice() {
  if (!device_) return;
  device_.reset();
  uinput_->giveBack(std::move(descriptor_));
}

std::optional<MadeDevice> MadeDevice::create(const libevdev* model, Uinput& uinput) {
  auto descriptor = uinput.take();
  if (!descriptor.isOpen()) return std::nullopt;
  libevdev_uinput* device = nullptr;
  // libevdev does not hand on the model's place, and it has to be set before the device exists.
  if (::ioctl(descriptor.get(), UI_SET_PHYS, ownPlace) == 0 &&
      libevdev_uinput_create_from_device(model, descriptor.get(), &device) == 0) {
    return MadeDevice(uinput, std::move(descriptor), device);
  }
  uinput.giveBack(std::move(descriptor));
  return std::nullopt;
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
