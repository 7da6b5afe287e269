#include "tap_test.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "tests/machine/login.h"
#include "tests/x11/harness/key_positions.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::x11_tests {
namespace {

/// A key that no test gives a meaning.
constexpr unsigned probeKey = KEY_MUTE;

constexpr const char* place = "test/Test keyboard";
constexpr const char* name = "Test keyboard";
constexpr const char* helperPlace = "vorrin-input-helper";
constexpr const char* probePlace = "test/Probe keyboard";
constexpr const char* probeName = "Probe keyboard";

ClientEvent clientEvent(const machine::SeenEvent& event) {
  // X counts the kernel's keys from 8, and repeats are presses to a program.
  const bool isButton = event.code == BTN_LEFT;
  return {
      .kind = std::string(isButton ? "Button" : "Key") + (event.value == 0 ? "Release" : "Press"),
      .detail = isButton ? 1U : event.code + 8U};
}

}  // namespace

HelperWorld::HelperWorld() {
  if (!keyboard_) keyboard_.emplace(name);
  if (!probeKeyboard_) probeKeyboard_.emplace(probeName);
  const bool found = waitUntil([this] {
    watch_.look();
    return watch_.has(place, name) && watch_.has(probePlace, probeName);
  });
  if (!found) throw std::runtime_error("the machine has no keyboard");
}

HelperWorld::~HelperWorld() {
  keyboard_->releaseAll();
}

void HelperWorld::unplug() {
  keyboard_.reset();
  probeKeyboard_.reset();
}

bool HelperWorld::seesHelper() {
  look();
  return watch_.has(helperPlace, "Vorrin keyboard") && watch_.has(helperPlace, "Vorrin pointer");
}

void HelperWorld::set(unsigned evdevKey, bool down) {
  const int key = static_cast<int>(evdevKey);
  down ? keyboard_->press(key) : keyboard_->release(key);
  down ? void(down_.insert(evdevKey)) : void(down_.erase(evdevKey));
  // A reader that is behind loses what does not fit into the kernel's record.
  look();
}

void HelperWorld::look() {
  watch_.look();
  for (const auto& event : watch_.seen()) {
    if (event.type != EV_KEY) continue;
    if (event.code == probeKey) {
      if (event.value == 0) probeCameFrom_ = event.place;
    } else {
      events_.push_back(clientEvent(event));
    }
  }
  watch_.forget();
}

bool HelperWorld::probe(machine::UhidKeyboard& keyboard) {
  probeCameFrom_.reset();
  keyboard.tap(static_cast<int>(probeKey));
  const bool arrived = waitUntil([this] {
    look();
    return probeCameFrom_.has_value();
  });
  if (!arrived) throw std::runtime_error("keys do not come through");
  return probeCameFrom_ == helperPlace;
}

void HelperWorld::settle() {
  probe(*probeKeyboard_);
  probe(*probeKeyboard_);
}

void HelperWorld::waitForGrab() {
  if (!grabWanted) return;
  // A keyboard is taken only while no key is down.
  const bool taken =
      waitUntil([this] { return probe(*probeKeyboard_) && (!down_.empty() || probe(*keyboard_)); });
  if (!taken) throw std::runtime_error("the keyboard is not held");
}

std::vector<ClientEvent> HelperWorld::take() {
  look();
  return std::exchange(events_, {});
}

void HelperUser::press(std::uint16_t virtualKey, Source source) {
  if (source != Source::keyboard) throw std::logic_error("there is nothing but the keyboard");
  world_.set(evdevOf(virtualKey), true);
}

void HelperUser::release(std::uint16_t virtualKey, Source) {
  world_.set(evdevOf(virtualKey), false);
}

void HelperUser::tap(std::uint16_t virtualKey, Source source) {
  press(virtualKey, source);
  release(virtualKey, source);
}

void HelperUser::tapEvdev(unsigned code) {
  pressEvdev(code);
  releaseEvdev(code);
}

void HelperUser::type(std::string_view text) {
  constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyz";
  constexpr std::array letterKeys{KEY_A, KEY_B, KEY_C, KEY_D, KEY_E, KEY_F, KEY_G, KEY_H, KEY_I,
                                  KEY_J, KEY_K, KEY_L, KEY_M, KEY_N, KEY_O, KEY_P, KEY_Q, KEY_R,
                                  KEY_S, KEY_T, KEY_U, KEY_V, KEY_W, KEY_X, KEY_Y, KEY_Z};
  for (const char character : text) {
    const auto letter = letters.find(character);
    const int digit = character == '0' ? KEY_0 : KEY_1 + character - '1';
    tapEvdev(static_cast<unsigned>(character == ' '                   ? KEY_SPACE
                                   : letter == std::string_view::npos ? digit
                                                                      : letterKeys[letter]));
  }
}

std::vector<ClientEvent> HelperClient::readUntil(
    const std::function<bool(const ClientEvent&)>& wanted) {
  std::vector<ClientEvent> events;
  const bool found = waitUntil([&] {
    for (auto& event : world_.take()) unread_.push_back(std::move(event));
    while (!unread_.empty()) {
      events.push_back(std::move(unread_.front()));
      unread_.pop_front();
      if (wanted(events.back())) return true;
    }
    return false;
  });
  if (!found) throw std::runtime_error("the event does not come; there came " + keysOf(events));
  return events;
}

std::vector<ClientEvent> HelperClient::readAll(const HelperUser&) {
  world_.settle();
  world_.waitForGrab();
  std::vector<ClientEvent> events(unread_.begin(), unread_.end());
  unread_.clear();
  for (auto& event : world_.take()) events.push_back(std::move(event));
  return events;
}

HelperTap::HelperTap(HelperWorld& world)
    : world_(world),
      process_(Environment{{"VORRIN_INPUT", "helper"}}, machine::playerLogin().inside({})) {
  machine::allow(machine::player);
  process_.command("ask");
  if (!waitUntil([this] { return process_.command("trusted") && world_.seesHelper(); })) {
    throw std::runtime_error("the helper does not serve");
  }
}

bool HelperTap::command(const std::string& line) {
  const bool done = process_.command(line);
  const auto word = line.substr(0, line.find(' '));
  if (word == "create" || word == "enable") world_.grabWanted = done;
  if (word == "disable" || word == "drop") world_.grabWanted = false;
  if (word == "create" || word == "enable" || word == "choose" || word == "disable" ||
      word == "drop") {
    world_.settle();
    world_.waitForGrab();
  }
  return done;
}

std::vector<SeenKey> HelperTap::readSeen() {
  world_.settle();
  // What the helper told before waits in the socket at the first command, and is read by the
  // second.
  process_.command("trusted");
  process_.command("trusted");
  return process_.takeSeen();
}

}  // namespace vorrin::x11_tests
