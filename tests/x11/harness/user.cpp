#include "tests/x11/harness/user.h"

#include <X11/XKBlib.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XTest.h>

#include <array>
#include <set>
#include <stdexcept>
#include <utility>

#include "tests/x11/harness/display.h"
#include "tests/x11/harness/key_positions.h"

namespace vorrin::x11_tests {

namespace {

// Xvfb's default keymap numbers keys as an X server on Linux does.
constexpr unsigned keycodeOffset = 8;

std::uint16_t keyOf(char character) {
  if (character == ' ') return 0x31;
  if (character == '.') return 0x2F;
  if (character >= '0' && character <= '9')
    return digitKeys[static_cast<std::size_t>(character - '0')];
  if (character >= 'a' && character <= 'z')
    return otherKeys.at(static_cast<std::size_t>(character - 'a')).first;
  throw std::runtime_error("no key for this character");
}

}  // namespace

struct User::Native {
  DisplayPointer display;
  XDevice* keyboard;
  std::set<std::pair<unsigned, Source>> keysDown = {};

  void key(unsigned keycode, bool down, Source source) {
    down ? void(keysDown.emplace(keycode, source)) : void(keysDown.erase({keycode, source}));
    send(keycode, down, source);
  }

  void send(unsigned keycode, bool down, Source source) const {
    if (source == Source::keyboard) {
      XTestFakeDeviceKeyEvent(display.get(), keyboard, keycode, down ? True : False, nullptr, 0, 0);
    } else {
      XTestFakeKeyEvent(display.get(), keycode, down ? True : False, 0);
    }
  }

  [[nodiscard]] XWindowAttributes attributesOf(Window window) const {
    XWindowAttributes attributes{};
    XGetWindowAttributes(display.get(), window, &attributes);
    return attributes;
  }

  void pointInto(Window window, int x, int y) const {
    int screenX = 0;
    int screenY = 0;
    Window child = 0;
    XTranslateCoordinates(display.get(), window, DefaultRootWindow(display.get()), x, y, &screenX,
                          &screenY, &child);
    XTestFakeMotionEvent(display.get(), 0, screenX, screenY, 0);
  }
};

unsigned keycodeOf(std::uint16_t virtualKey) {
  return evdevOf(virtualKey) + keycodeOffset;
}

std::optional<char> characterOf(unsigned keycode) {
  for (const char character : std::string_view("abcdefghijklmnopqrstuvwxyz0123456789 .")) {
    if (keycodeOf(keyOf(character)) == keycode) return character;
  }
  return std::nullopt;
}

User::User(const std::string& display) {
  DisplayPointer connection = openDisplay(display);
  const int number = deviceNamed(connection.get(), serverKeyboard);
  XDevice* const keyboard = XOpenDevice(connection.get(), static_cast<XID>(number));
  native_.reset(new Native{std::move(connection), keyboard});
}

User::~User() {
  for (const auto& [keycode, source] : native_->keysDown) native_->send(keycode, false, source);
  XkbLockModifiers(native_->display.get(), XkbUseCoreKbd, 0xFF, 0);
  XkbLockGroup(native_->display.get(), XkbUseCoreKbd, 0);
  flush();
  XCloseDevice(native_->display.get(), native_->keyboard);
}

void User::press(std::uint16_t virtualKey, Source source) {
  queue(virtualKey, true, source);
  flush();
}

void User::release(std::uint16_t virtualKey, Source source) {
  queue(virtualKey, false, source);
  flush();
}

void User::tap(std::uint16_t virtualKey, Source source) {
  queue(virtualKey, true, source);
  queue(virtualKey, false, source);
  flush();
}

void User::pressEvdev(unsigned code, Source source) {
  native_->key(code + keycodeOffset, true, source);
  flush();
}

void User::releaseEvdev(unsigned code, Source source) {
  native_->key(code + keycodeOffset, false, source);
  flush();
}

void User::tapEvdev(unsigned code, Source source) {
  pressEvdev(code, source);
  releaseEvdev(code, source);
}

void User::type(std::string_view text) {
  for (const char character : text) tap(keyOf(character));
}

void User::queue(std::uint16_t virtualKey, bool down, Source source) {
  native_->key(keycodeOf(virtualKey), down, source);
}

void User::flush() {
  XSync(native_->display.get(), False);
}

void User::pointAt(unsigned long window) {
  const XWindowAttributes attributes = native_->attributesOf(window);
  native_->pointInto(window, attributes.width / 2, attributes.height / 2);
  flush();
}

void User::pointAt(unsigned long window, int x, int y) {
  native_->pointInto(window, x, y);
  flush();
}

void User::pointAtCorner(unsigned long window) {
  constexpr int distance = 5;
  native_->pointInto(window, distance, native_->attributesOf(window).height - distance);
  flush();
}

void User::pressButton(unsigned button) {
  XTestFakeButtonEvent(native_->display.get(), button, True, 0);
  flush();
}

void User::releaseButton(unsigned button) {
  XTestFakeButtonEvent(native_->display.get(), button, False, 0);
  flush();
}

void User::click(unsigned button) {
  pressButton(button);
  releaseButton(button);
}

}  // namespace vorrin::x11_tests
