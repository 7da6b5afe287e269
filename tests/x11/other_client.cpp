#include "other_client.h"

#include <X11/extensions/XInput2.h>

#include <array>
#include <set>

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
  std::set<std::string> added;

  void change(XIAnyHierarchyChangeInfo info) const {
    XIChangeHierarchy(display.get(), &info, 1);
    XSync(display.get(), False);
  }
};

OtherClient::OtherClient(const std::string& display)
    : native_(new Native{openDisplay(display), {}}) {}

OtherClient::~OtherClient() {
  while (!native_->added.empty()) removeMaster(*native_->added.begin());
}

bool OtherClient::holdKey(std::uint16_t virtualKey, const std::string& device) {
  Display* const display = native_->display.get();
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_KeyPress);
  const int number = deviceNamed(display, device);
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
  native_->added.insert(name);
}

void OtherClient::removeMaster(const std::string& name) {
  XIAnyHierarchyChangeInfo change{};
  change.remove.type = XIRemoveMaster;
  change.remove.deviceid = deviceNamed(native_->display.get(), name + " keyboard");
  change.remove.return_mode = XIFloating;
  native_->change(change);
  native_->added.erase(name);
}

void OtherClient::detachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.detach.type = XIDetachSlave;
  change.detach.deviceid = deviceNamed(native_->display.get(), serverKeyboard);
  native_->change(change);
}

void OtherClient::attachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.attach.type = XIAttachSlave;
  change.attach.deviceid = deviceNamed(native_->display.get(), serverKeyboard);
  change.attach.new_master = deviceNamed(native_->display.get(), "Virtual core keyboard");
  native_->change(change);
}

}  // namespace vorrin::x11_tests
