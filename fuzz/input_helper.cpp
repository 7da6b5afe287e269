// The main program beside an input helper that says anything at all.

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <variant>
#include <vector>

#include "bridge/keyboard_listener.h"
#include "bridge/program_engine.h"
#include "input_helper/protocol/protocol.h"
#include "platform/fake/system/fake_system.h"
#include "platform/fake/time/fake_time.h"
#include "platform/fatal_error.h"
#include "platform/linux/input/helper/tap.h"

using namespace vorrin;
using namespace vorrin::helper_protocol;

namespace {

/// The program's listener on a tap that the messages reach as they do in the real connection.
class Program {
 public:
  Program() {
    fake::resetTime();
    fake::resetSystem();
    engine.held.clear();
    tap_.setEnabled(true);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program() { engine.stopAll(); }

  void receive(std::span<const std::byte> packet) {
    const auto message = decodeFromHelper(packet);
    if (!message) return;
    const auto again = encode(*message);
    assertThat(std::ranges::equal(again.view(), packet), "a message has one form only");
    follow(*message);
  }

  void follow(const FromHelper& message) {
    if (const auto* moved = std::get_if<KeyMoved>(&message)) {
      const bool swallow = tap_.tell(*moved) == TapVerdict::swallow;
      assertThat(!swallow || enabled_, "a disabled tap swallows nothing");
      const bool stops = moved->key == helper_protocol::escapeKey && moved->down != 0 && enabled_;
      assertThat(!stops || isQuiet(), "Escape stops both macros");
    } else if (std::holds_alternative<Disabled>(message)) {
      tap_.tellDisabled();
      assertThat(!enabled_ || isQuiet(), "a disabled tap stops both macros");
      setEnabled(true);  // as the listener does
    }
  }

  void setEnabled(bool enabled) {
    enabled_ = enabled;
    tap_.setEnabled(enabled);
  }

 private:
  static bool isQuiet() { return !engine.running[0] && !engine.running[1]; }

  bool enabled_ = true;
  helper::Tap tap_{0xC00, keyboardTapCallback, nullptr, [](const Configure& configuration) {
                     assertThat(decodeToHelper(encode(ToHelper(configuration)).view()).has_value(),
                                "the helper understands every message");
                   }};
};

std::uint16_t anyKey(FuzzedDataProvider& input) {
  return input.ConsumeBool() ? input.PickValueInArray(shortcutKeys) : helper_protocol::escapeKey;
}

void play(FuzzedDataProvider& input, Program& program) {
  switch (input.ConsumeIntegralInRange<int>(0, 5)) {
    case 0: {
      const auto size = input.ConsumeIntegralInRange<std::size_t>(0, sizeof(Packet::bytes) + 4);
      return program.receive(input.ConsumeBytes<std::byte>(size));
    }
    case 1:
      return program.follow(KeyMoved{input.ConsumeIntegral<std::uint32_t>(),
                                     input.PickValueInArray(shortcutKeys), 1, 0});
    case 2:
      return program.follow(KeyMoved{0, anyKey(input), input.ConsumeBool(), input.ConsumeBool()});
    case 3:
      return program.follow(Disabled{input.ConsumeIntegral<std::uint32_t>()});
    case 4:
      return fake::advance(0.01);
    default:
      return program.setEnabled(input.ConsumeBool());
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  FuzzedDataProvider input(data, size);
  Program program;
  while (input.remaining_bytes() > 0) play(input, program);
  return 0;
}
