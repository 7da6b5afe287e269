#include "tests/x11/harness/other_client.h"

#include <X11/extensions/XInput2.h>

#include <array>

#include "tests/x11/harness/wait.h"

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

void perform(Display* display, XIAnyHierarchyChangeInfo change) {
  XIChangeHierarchy(display, &change, 1);
  XSync(display, False);
}

}  // namespace

OtherClient::~OtherClient() {
  while (!added_.empty()) removeMaster(*added_.begin());
}

bool OtherClient::holdKey(std::uint16_t virtualKey, const std::string& device) {
  Display* const display = display_.get();
  std::array<unsigned char, XIMaskLen(XI_LASTEVENT)> bits{};
  XISetMask(bits.data(), XI_KeyPress);
  const int number = deviceNamed(display, device);
  XIEventMask mask{number, static_cast<int>(bits.size()), bits.data()};
  XIGrabModifiers modifiers{0, 0};
  return XIGrabKeycode(display, number, static_cast<int>(keycodeOf(virtualKey)),
                       DefaultRootWindow(display), XIGrabModeAsync, XIGrabModeAsync, False, &mask,
                       1, &modifiers) == 0;
}

bool OtherClient::isHeld(std::uint16_t virtualKey) {
  Display* const display = display_.get();
  stopServer();
  const bool isFree = holdKey(virtualKey);
  if (isFree) {
    XIGrabModifiers modifiers{0, 0};
    XIUngrabKeycode(display, deviceNamed(display, serverKeyboard),
                    static_cast<int>(keycodeOf(virtualKey)), DefaultRootWindow(display), 1,
                    &modifiers);
  }
  resumeServer();
  return !isFree;
}

bool OtherClient::waitUntilHeld(std::uint16_t virtualKey) {
  return waitUntil([&] { return isHeld(virtualKey); });
}

bool OtherClient::waitUntilFree(std::uint16_t virtualKey) {
  return waitUntil([&] { return !isHeld(virtualKey); });
}

bool OtherClient::holdKeyOfCore(std::uint16_t virtualKey) {
  Display* const display = display_.get();
  takeError(display);
  XGrabKey(display, static_cast<int>(keycodeOf(virtualKey)), 0, DefaultRootWindow(display), False,
           GrabModeAsync, GrabModeAsync);
  return !takeError(display);
}

bool OtherClient::grabKeyboard(bool frozen) {
  Display* const display = display_.get();
  return XGrabKeyboard(display, DefaultRootWindow(display), False, GrabModeAsync,
                       frozen ? GrabModeSync : GrabModeAsync, CurrentTime) == GrabSuccess;
}

int OtherClient::pressesReceived() {
  Display* const display = display_.get();
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
  Display* const display = display_.get();
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
  XGrabServer(display_.get());
  XSync(display_.get(), False);
}

void OtherClient::resumeServer() {
  XUngrabServer(display_.get());
  XSync(display_.get(), False);
}

void OtherClient::addMaster(const std::string& name) {
  std::string ownName = name;
  perform(display_.get(), addition(ownName));
  added_.insert(name);
}

void OtherClient::removeMaster(const std::string& name) {
  XIAnyHierarchyChangeInfo change{};
  change.remove.type = XIRemoveMaster;
  change.remove.deviceid = deviceNamed(display_.get(), name + " keyboard");
  change.remove.return_mode = XIFloating;
  perform(display_.get(), change);
  added_.erase(name);
}

void OtherClient::detachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.detach.type = XIDetachSlave;
  change.detach.deviceid = deviceNamed(display_.get(), serverKeyboard);
  perform(display_.get(), change);
}

void OtherClient::attachKeyboard() {
  XIAnyHierarchyChangeInfo change{};
  change.attach.type = XIAttachSlave;
  change.attach.deviceid = deviceNamed(display_.get(), serverKeyboard);
  change.attach.new_master = deviceNamed(display_.get(), "Virtual core keyboard");
  perform(display_.get(), change);
}

}  // namespace vorrin::x11_tests
