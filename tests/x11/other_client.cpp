#include "other_client.h"

#include <X11/extensions/XInput2.h>

#include <array>
#include <span>
#include <stdexcept>

#include "tests/x11/harness/display.h"

namespace vorrin::x11_tests {

namespace {

XIAnyHierarchyChangeInfo addition(std::string& name) {
  XIAnyHierarchyChangeInfo change{};
  change.add.type = XIAddMaster;
  change.add.name = name.data();
  change.add.send_core = True;
  change.add.enable = True;
  return change;
}

}  // namespace

struct OtherClient::Native {
  DisplayPointer display;

  [[nodiscard]] int deviceNamed(const std::string& name) const {
    int count = 0;
    XIDeviceInfo* const devices = XIQueryDevice(display.get(), XIAllDevices, &count);
    int found = 0;
    for (const XIDeviceInfo& device : std::span(devices, static_cast<std::size_t>(count))) {
      if (device.name == name) found = device.deviceid;
    }
    XIFreeDeviceInfo(devices);
    if (found == 0) throw std::runtime_error("no device " + name);
    return found;
  }

  void change(XIAnyHierarchyChangeInfo info) const {
    XIChangeHierarchy(display.get(), &info, 1);
    XSync(display.get(), False);
  }
};

OtherClient::OtherClient(const std::string& display) : native_(new Native{openDisplay(display)}) {
  int major = 2;
  int minor = 2;
  XIQueryVersion(native_->display.get(), &major, &minor);
}

OtherClient::~OtherClient() = default;

bool OtherClient::holdKey(std::uint16_t virtualKey, const std::string& device) {
  Display* const display = native_->display.get();
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_KeyPress);
  const int number = native_->deviceNamed(device);
  XIEventMask mask{number, static_cast<int>(bits.size()), bits.data()};
  XIGrabModifiers modifiers{0, 0};
  return XIGrabKeycode(display, number, static_cast<int>(keycodeOf(virtualKey)),
                       DefaultRootWindow(display), XIGrabModeAsync, XIGrabModeAsync, False, &mask,
                       1, &modifiers) == 0;
}

bool OtherClient::holdKeyOfCore(std::uint16_t virtualKey) {
  Display* const display = native_->display.get();
  takeError(display);
  XGrabKey(display, static_cast<int>(keycodeOf(virtualKey)), 0, DefaultRootWindow(display), False,
           GrabModeAsync, GrabModeAsync);
  return !takeError(display);
}

bool OtherClient::grabKeyboard(bool frozen) {
  Display* const display = native_->display.get();
  return XGrabKeyboard(display, DefaultRootWindow(display), False, GrabModeAsync,
                       frozen ? GrabModeSync : GrabModeAsync, CurrentTime) == GrabSuccess;
}

int OtherClient::pressesReceived() {
  Display* const display = native_->display.get();
  XSync(display, False);
  int presses = 0;
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == KeyPress || event.type == GenericEvent) ++presses;
  }
  return presses;
}

void OtherClient::makeUpKey(std::uint16_t virtualKey, unsigned long window) {
  Display* const display = native_->display.get();
  for (const int type : {KeyPress, KeyRelease}) {
    XEvent event{};
    event.xkey.type = type;
    event.xkey.window = window;
    event.xkey.root = DefaultRootWindow(display);
    event.xkey.same_screen = True;
    event.xkey.keycode = keycodeOf(virtualKey);
    XSendEvent(display, window, True, KeyPressMask | KeyReleaseMask, &event);
  }
  XSync(display, False);
}

void OtherClient::stopServer() {
  XGrabServer(native_->display.get());
  XSync(native_->display.get(), False);
}

void OtherClient::resumeServer() {
  XUngrabServer(native_->display.get());
  XSync(native_->display.get(), False);
}

void OtherClient::addMaster(const std::string& name) {
  std::string ownName = name;
  native_->change(addition(ownName));
}

void OtherClient::removeMaster(const std::string& name) {
  XIAnyHierarchyChangeInfo change{};
  change.remove.type = XIRemoveMaster;
  change.remove.deviceid = native_->deviceNamed(name + " keyboard");
  change.remove.return_mode = XIFloating;
  native_->change(change);
}

void OtherClient::detachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.detach.type = XIDetachSlave;
  change.detach.deviceid = native_->deviceNamed(serverKeyboard);
  native_->change(change);
}

void OtherClient::attachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.attach.type = XIAttachSlave;
  change.attach.deviceid = native_->deviceNamed(serverKeyboard);
  change.attach.new_master = native_->deviceNamed("Virtual core keyboard");
  native_->change(change);
}

}  // namespace vorrin::x11_tests
