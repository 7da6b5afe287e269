#include "uhid_keyboard.h"

#include <fcntl.h>
#include <linux/input-event-codes.h>
#include <linux/uhid.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>

namespace vorrin::machine {
namespace {

// One input report: modifiers; three buttons; X; Y; three media keys; six key usages.
constexpr std::uint8_t descriptor[] = {
    // A keyboard:
    0x05, 0x01, 0x09, 0x06, 0xA1, 0x01,
    // eight modifiers,
    0x05, 0x07, 0x19, 0xE0, 0x29, 0xE7, 0x15, 0x00, 0x25, 0x01, 0x75, 0x01, 0x95, 0x08, 0x81, 0x02,
    // a pointer in it, with three buttons,
    0x05, 0x01, 0x09, 0x02, 0xA1, 0x00,  //
    0x05, 0x09, 0x19, 0x01, 0x29, 0x03, 0x95, 0x03, 0x81, 0x02, 0x95, 0x05, 0x81, 0x03,
    // X and Y, relative,
    0x05, 0x01, 0x09, 0x30, 0x09, 0x31, 0x15, 0x81, 0x25, 0x7F, 0x75, 0x08, 0x95, 0x02, 0x81, 0x06,
    0xC0,
    // volume up, volume down, mute,
    0x05, 0x0C, 0x15, 0x00, 0x25, 0x01, 0x09, 0xE9, 0x09, 0xEA, 0x09, 0xE2, 0x75, 0x01, 0x95, 0x03,
    0x81, 0x02, 0x95, 0x05, 0x81, 0x03,
    // five lights,
    0x05, 0x08, 0x19, 0x01, 0x29, 0x05, 0x95, 0x05, 0x91, 0x02, 0x95, 0x03, 0x91, 0x03,
    // six keys.
    0x05, 0x07, 0x19, 0x00, 0x29, 0x7F, 0x15, 0x00, 0x25, 0x7F, 0x75, 0x08, 0x95, 0x06, 0x81, 0x00,
    0xC0};

[[noreturn]] void fail(const char* what) {
  std::perror(what);
  std::abort();
}

const std::map<int, int> modifierBits = {{KEY_LEFTCTRL, 0}, {KEY_LEFTSHIFT, 1}, {KEY_LEFTALT, 2},
                                         {KEY_LEFTMETA, 3}, {KEY_RIGHTCTRL, 4}, {KEY_RIGHTSHIFT, 5},
                                         {KEY_RIGHTALT, 6}, {KEY_RIGHTMETA, 7}};
const std::map<int, int> buttonBits = {{BTN_LEFT, 0}, {BTN_RIGHT, 1}, {BTN_MIDDLE, 2}};
const std::map<int, int> mediaBits = {{KEY_VOLUMEUP, 0}, {KEY_VOLUMEDOWN, 1}, {KEY_MUTE, 2}};

std::map<int, std::uint8_t> makeUsages() {
  std::map<int, std::uint8_t> usages = {
      {KEY_ENTER, 0x28}, {KEY_ESC, 0x29},   {KEY_BACKSPACE, 0x2A}, {KEY_TAB, 0x2B},
      {KEY_SPACE, 0x2C}, {KEY_GRAVE, 0x35}, {KEY_CAPSLOCK, 0x39},  {KEY_F6, 0x3F},
      {KEY_F7, 0x40},    {KEY_F8, 0x41},    {KEY_F9, 0x42},        {KEY_HOME, 0x4A},
      {KEY_DOWN, 0x51},  {KEY_UP, 0x52},    {KEY_NUMLOCK, 0x53}};
  constexpr std::array letters = {KEY_A, KEY_B, KEY_C, KEY_D, KEY_E, KEY_F, KEY_G, KEY_H, KEY_I,
                                  KEY_J, KEY_K, KEY_L, KEY_M, KEY_N, KEY_O, KEY_P, KEY_Q, KEY_R,
                                  KEY_S, KEY_T, KEY_U, KEY_V, KEY_W, KEY_X, KEY_Y, KEY_Z};
  for (std::size_t i = 0; i < letters.size(); ++i) {
    usages[letters[i]] = static_cast<std::uint8_t>(0x04 + i);
  }
  for (int digit = 0; digit < 10; ++digit) {
    usages[KEY_1 + digit] = static_cast<std::uint8_t>(0x1E + digit);
  }
  return usages;
}

const std::map<int, std::uint8_t> usages = makeUsages();

std::uint8_t bitsOf(const std::set<int>& down, const std::map<int, int>& places) {
  unsigned bits = 0;
  for (const auto& [key, bit] : places) bits |= (down.contains(key) ? 1U : 0U) << bit;
  return static_cast<std::uint8_t>(bits);
}

}  // namespace

UhidKeyboard::UhidKeyboard(const std::string& name)
    : device_(::open("/dev/uhid", O_RDWR | O_CLOEXEC | O_NONBLOCK)) {
  if (!device_.isOpen()) fail("/dev/uhid");
  uhid_event event{};
  event.type = UHID_CREATE2;
  auto& create = event.u.create2;
  std::snprintf(reinterpret_cast<char*>(create.name), sizeof create.name, "%s", name.c_str());
  std::snprintf(reinterpret_cast<char*>(create.phys), sizeof create.phys, "test/%s", name.c_str());
  create.rd_size = sizeof descriptor;
  create.bus = 5;  // Bluetooth
  create.vendor = 0x1234;
  create.product = 0x5678;
  std::memcpy(create.rd_data, descriptor, sizeof descriptor);
  if (::write(device_.get(), &event, sizeof event) != sizeof event) fail("UHID_CREATE2");
}

void UhidKeyboard::tap(int key) {
  press(key);
  release(key);
}

void UhidKeyboard::releaseAll() {
  down_.clear();
  send(0, 0);
}

void UhidKeyboard::move(std::int8_t x, std::int8_t y) {
  send(x, y);
}

void UhidKeyboard::set(int key, bool down) {
  if (!usages.contains(key) && !modifierBits.contains(key) && !buttonBits.contains(key) &&
      !mediaBits.contains(key)) {
    fail("a key that the keyboard has not");
  }
  if (down) {
    down_.insert(key);
  } else {
    down_.erase(key);
  }
  send(0, 0);
}

void UhidKeyboard::send(std::int8_t x, std::int8_t y) {
  uhid_event event{};
  event.type = UHID_INPUT2;
  auto* const report = event.u.input2.data;
  report[0] = bitsOf(down_, modifierBits);
  report[1] = bitsOf(down_, buttonBits);
  report[2] = static_cast<std::uint8_t>(x);
  report[3] = static_cast<std::uint8_t>(y);
  report[4] = bitsOf(down_, mediaBits);
  std::size_t place = 5;
  for (const int key : down_) {
    if (const auto usage = usages.find(key); usage != usages.end() && place < 11) {
      report[place++] = usage->second;
    }
  }
  event.u.input2.size = 11;
  if (::write(device_.get(), &event, sizeof event) != sizeof event) fail("UHID_INPUT2");
}

std::optional<unsigned> UhidKeyboard::lights() {
  uhid_event event{};
  while (::read(device_.get(), &event, sizeof event) > 0) {
    if (event.type != UHID_OUTPUT) continue;
    const auto& output = event.u.output;
    lights_ = output.data[output.size > 1 ? 1 : 0];
  }
  return lights_;
}

}  // namespace vorrin::machine
