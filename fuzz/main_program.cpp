// The input helper between a main program that says anything at all and keyboards that do.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <optional>
#include <span>
#include <variant>
#include <vector>

#include "input_helper/filter.h"
#include "input_helper/protocol/protocol.h"

using namespace vorrin::helper_protocol;
using namespace vorrin::input_helper;
using std::chrono::milliseconds;

namespace {

constexpr std::array<std::uint16_t, 10> keys{KEY_TAB,   KEY_GRAVE,     KEY_F6, KEY_ESC,
                                             KEY_ENTER, KEY_BACKSPACE, KEY_A,  KEY_LEFTSHIFT,
                                             KEY_F9,    KEY_LEFTCTRL};
constexpr int keyboards = 2;

void check(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "Assertion failed: %s\n", what);
  std::abort();
}

/// Two keyboards with a user, the clones that the filter writes to, and a main program.
class World {
 public:
  World() {
    for (int id = 0; id < keyboards; ++id) filter_.addKeyboard(id, {}, now_);
    filter_.announce(now_);
  }

  void play(FuzzedDataProvider& input) {
    switch (input.ConsumeIntegralInRange<int>(0, 11)) {
      case 0:
        return obey(packet(input));
      case 1:
        return obey(encode(configuration(input)).view());
      case 2:
        return obey(encode(verdict(input)).view());
      case 3:
        return pass(milliseconds(input.ConsumeIntegralInRange<int>(0, 1500)));
      case 4:
        return leave();
      case 5:
        busy_ = input.ConsumeIntegralInRange<int>(0, 3) == 0;
        return;
      case 6:
        return replug(input.ConsumeIntegralInRange<int>(0, keyboards - 1));
      default:
        return type(input);
    }
  }

  /// Whether the panic chord was pressed, at which the helper ends and its clones with it.
  [[nodiscard]] bool ended() const { return ended_; }

  /// The user takes his hands away, and the main program says no more.
  void rest() {
    for (auto& [id, down] : down_) {
      for (std::size_t key = 0; key < down.size(); ++key) {
        if (down.test(key)) move(id, static_cast<std::uint16_t>(key), 0);
      }
    }
    pass(milliseconds(10'000));
    for (const auto& [id, clone] : clones_) check(clone.none(), "no key stays down on a clone");
  }

 private:
  void type(FuzzedDataProvider& input) {
    const int id = input.ConsumeIntegralInRange<int>(0, keyboards - 1);
    const auto key = input.PickValueInArray(keys);
    const bool wasDown = down_[id].test(key);
    const bool repeats = wasDown && input.ConsumeBool();
    move(id, key, repeats ? 2 : wasDown ? 0 : 1);
  }

  void move(int id, std::uint16_t key, int value) {
    now_ += milliseconds(1);
    down_[id].set(key, value != 0);
    filter_.receive(id, {{EV_MSC, MSC_SCAN, key}, {EV_KEY, key, value}}, now_, now_);
  }

  void replug(int id) {
    filter_.removeKeyboard(id, now_);
    grabbed_[id] = false;
    clones_[id].reset();
    down_[id].reset();
    filter_.addKeyboard(id, {}, now_);
  }

  /// The session goes to the back and comes to the front again.
  void leave() {
    filter_.removeAll();
    for (int id = 0; id < keyboards; ++id) {
      grabbed_[id] = false;
      clones_[id].reset();
      filter_.addKeyboard(id, down_[id], now_);
    }
    filter_.announce(now_);
  }

  void pass(milliseconds time) {
    const auto end = now_ + time;
    for (auto due = filter_.nextDeadline(); due && *due <= end; due = filter_.nextDeadline()) {
      now_ = std::max(now_, *due) + milliseconds(1);
      filter_.advance(now_);
    }
    now_ = std::max(now_, end);
  }

  void obey(std::span<const std::byte> bytes) {
    const auto message = decodeToHelper(bytes);
    if (!message) return;
    const auto again = encode(*message);
    check(std::ranges::equal(again.view(), bytes), "a message has one form only");
    if (const auto* configuration = std::get_if<Configure>(&*message)) {
      filter_.configure(*configuration, now_);
    } else if (const auto* verdict = std::get_if<Verdict>(&*message)) {
      filter_.answer(*verdict, now_);
    } else if (const auto* post = std::get_if<Post>(&*message)) {
      for (std::size_t i = 0; i < post->count; ++i) {
        check(post->keys[i].key == 0 || isDigitKey(post->keys[i].key), "only digits are posted");
      }
    }
  }

  static std::vector<std::byte> packet(FuzzedDataProvider& input) {
    const auto size = input.ConsumeIntegralInRange<std::size_t>(0, sizeof(Packet::bytes) + 4);
    return input.ConsumeBytes<std::byte>(size);
  }

  static ToHelper configuration(FuzzedDataProvider& input) {
    return Configure{input.ConsumeBool(), input.ConsumeIntegralInRange<ShortcutSet>(0, 63)};
  }

  ToHelper verdict(FuzzedDataProvider& input) const {
    const auto earlier = input.ConsumeIntegralInRange<std::uint32_t>(0, 2);
    return Verdict{lastQuestion_ + 1 - earlier, input.ConsumeBool()};
  }

  GrabResult grab(int id) {
    if (busy_) return {GrabOutcome::busy, now_};
    check(down_[id].none(), "a keyboard is taken only while no key is down");
    check(!grabbed_[id], "a keyboard is taken once");
    grabbed_[id] = true;
    return {GrabOutcome::grabbed, now_};
  }

  void emit(int id, std::span<const InputEvent> frame) {
    for (const auto& event : frame) {
      const bool isRelease = event.type == EV_KEY && event.value == 0;
      check(grabbed_[id] || isRelease, "a clone speaks only for a keyboard that was taken");
      if (event.type != EV_KEY) continue;
      const bool isDown = clones_[id].test(event.code);
      check(isDown == (event.value != 1), "presses and releases take turns");
      clones_[id].set(event.code, event.value != 0);
    }
  }

  void send(const FromHelper& message) {
    const auto bytes = encode(message);
    check(decodeFromHelper(bytes.view()) == message, "the other end understands every message");
    const auto* moved = std::get_if<KeyMoved>(&message);
    if (moved == nullptr) return;
    check(isShortcutKey(moved->key) || moved->key == escapeKey, "no other key is told of");
    if (moved->question == 0) return;
    check(isShortcutKey(moved->key), "no other key is asked about");
    check(moved->question == ++lastQuestion_, "questions are numbered one by one");
  }

  Moment now_{milliseconds(1'000'000)};
  bool ended_ = false;
  bool busy_ = false;
  std::uint32_t lastQuestion_ = 0;
  std::map<int, KeySet> down_{{0, {}}, {1, {}}};
  std::map<int, KeySet> clones_{{0, {}}, {1, {}}};
  std::map<int, bool> grabbed_;
  Filter filter_{{
      .grab = [this](KeyboardId id) { return grab(id); },
      .ungrab =
          [this](KeyboardId id) {
            grabbed_[id] = false;
            return now_;
          },
      .emit = [this](KeyboardId id, std::span<const InputEvent> frame) { emit(id, frame); },
      .send = [this](const FromHelper& message) { send(message); },
      .panic = [this] { ended_ = true; },
  }};
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  World world;
  while (input.remaining_bytes() > 0 && !world.ended()) world.play(input);
  if (!world.ended()) world.rest();
  return 0;
}
