#include "platform/linux/input/x11/input_requests.h"

#include <X11/Xatom.h>
#include <X11/extensions/XInput2.h>

#include <array>
#include <cstddef>
#include <memory>

namespace vorrin::x11 {

namespace {

struct DeviceInfoFree {
  void operator()(XIDeviceInfo* info) const { XIFreeDeviceInfo(info); }
};

struct XFreeDeleter {
  void operator()(void* memory) const { XFree(memory); }
};

using EventBits = std::array<unsigned char, XIMaskLen(XI_LASTEVENT)>;

XIEventMask maskOf(int device, EventBits& bits) {
  return {device, static_cast<int>(bits.size()), bits.data()};
}

std::vector<XIGrabModifiers> grabModifiers(std::span<const unsigned> states) {
  std::vector<XIGrabModifiers> modifiers;
  for (const unsigned state : states) modifiers.push_back({static_cast<int>(state), 0});
  return modifiers;
}

bool hasKeys(const XIDeviceInfo& info) {
  const std::span classes(info.classes, static_cast<std::size_t>(info.num_classes));
  for (const XIAnyClassInfo* const entry : classes) {
    if (entry->type == XIKeyClass) return true;
  }
  return false;
}

// The server marks the devices it keeps for XTEST with this property.
bool isXtestDevice(Display* display, int device) {
  const Atom property = XInternAtom(display, "XTEST Device", True);
  if (property == 0) return false;
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long rest = 0;
  unsigned char* data = nullptr;
  if (XIGetProperty(display, device, property, 0, 1, False, XA_INTEGER, &type, &format, &count,
                    &rest, &data) != Success) {
    return false;
  }
  const std::unique_ptr<unsigned char, XFreeDeleter> owned(data);
  return format == 8 && count == 1 && *data != 0;
}

}  // namespace

std::vector<SlaveKeyboard> slaveKeyboards(Display* display) {
  int count = 0;
  const std::unique_ptr<XIDeviceInfo, DeviceInfoFree> infos(
      XIQueryDevice(display, XIAllDevices, &count));
  if (!infos) return {};
  std::vector<SlaveKeyboard> keyboards;
  for (const XIDeviceInfo& info : std::span(infos.get(), static_cast<std::size_t>(count))) {
    const bool isSlave = info.use == XISlaveKeyboard || info.use == XIFloatingSlave;
    if (!isSlave || !info.enabled || !hasKeys(info)) continue;
    keyboards.push_back({info.deviceid, isXtestDevice(display, info.deviceid)});
  }
  return keyboards;
}

void selectRawKeys(Display* display, bool selected) {
  EventBits bits{};
  if (selected) {
    XISetMask(bits.data(), XI_RawKeyPress);
    XISetMask(bits.data(), XI_RawKeyRelease);
    XISetMask(bits.data(), XI_HierarchyChanged);
  }
  // Selected for the slaves too and not for the masters alone: the masters' copies wait while
  // another program has frozen the master.
  XIEventMask mask = maskOf(XIAllDevices, bits);
  XISelectEvents(display, DefaultRootWindow(display), &mask, 1);
}

GrabOutcome grabKey(Display* display, int device, KeyCode keycode,
                    std::span<const unsigned> modifierStates) {
  EventBits bits{};
  XISetMask(bits.data(), XI_KeyPress);
  XISetMask(bits.data(), XI_KeyRelease);
  // While our own grab lasts the server leaves us out of the raw events of that keyboard unless the
  // grab itself asks for them.
  XISetMask(bits.data(), XI_RawKeyPress);
  XISetMask(bits.data(), XI_RawKeyRelease);
  XIEventMask mask = maskOf(device, bits);
  for (int screen = 0; screen < ScreenCount(display); ++screen) {
    std::vector<XIGrabModifiers> modifiers = grabModifiers(modifierStates);
    const int failures = XIGrabKeycode(display, device, keycode, RootWindow(display, screen),
                                       XIGrabModeAsync, XIGrabModeAsync, False, &mask,
                                       static_cast<int>(modifiers.size()), modifiers.data());
    if (failures > 0) return GrabOutcome::refused;
    if (failures < 0) return GrabOutcome::gone;
  }
  return GrabOutcome::granted;
}

void ungrabKey(Display* display, int device, KeyCode keycode,
               std::span<const unsigned> modifierStates) {
  std::vector<XIGrabModifiers> modifiers = grabModifiers(modifierStates);
  for (int screen = 0; screen < ScreenCount(display); ++screen) {
    XIUngrabKeycode(display, device, keycode, RootWindow(display, screen),
                    static_cast<int>(modifiers.size()), modifiers.data());
  }
}

void endGrab(Display* display, int device) {
  XIUngrabDevice(display, device, CurrentTime);
}

KeySet keysDownAtMaster(Display* display) {
  std::array<char, 32> bytes{};
  XQueryKeymap(display, bytes.data());
  KeySet keys;
  for (std::size_t code = 0; code < keys.size(); ++code) {
    keys[code] = ((static_cast<unsigned char>(bytes[code / 8]) >> (code % 8)) & 1U) != 0;
  }
  return keys;
}

}  // namespace vorrin::x11
