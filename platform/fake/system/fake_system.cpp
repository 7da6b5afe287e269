#include "platform/fake/system/fake_system.h"

#include <memory>
#include <utility>

#include "platform/fake/system/session_state.h"
#include "platform/fake/system/tap_state.h"

namespace vorrin::fake {
namespace {

constexpr std::size_t recordedWithoutAllocation = 10'000;

std::vector<std::weak_ptr<TapState>>& taps() {
  static std::vector<std::weak_ptr<TapState>> instance;
  return instance;
}

/// Calls `action` with each living tap. By index, for taps may be made meanwhile.
template <class Action>
void forEachTap(Action action) {
  for (std::size_t index = 0; index < taps().size(); ++index) {
    const auto tap = taps()[index].lock();
    if (tap && tap->alive) action(*tap);
  }
}

bool masks(const TapState& tap, EventType type) {
  const auto bit = static_cast<std::uint32_t>(type);
  return bit < 64 && ((tap.mask >> bit) & 1) != 0;
}

bool isClaimed(const TapState& tap, std::int64_t keyCode) {
  return std::in_range<std::uint16_t>(keyCode) &&
         tap.claimed.contains(static_cast<std::uint16_t>(keyCode));
}

}  // namespace

System& system() {
  static System instance;
  return instance;
}

SessionState& session() {
  static SessionState instance;
  return instance;
}

void registerTap(const std::shared_ptr<TapState>& tap) {
  taps().push_back(tap);
}

void resetSystem() {
  taps().clear();
  session() = {};
  system() = {};
  system().posted.reserve(recordedWithoutAllocation);
  system().batches.reserve(recordedWithoutAllocation);
}

TapVerdict feed(const TapEvent& event) {
  auto verdict = TapVerdict::pass;
  forEachTap([&](const TapState& tap) {
    if (verdict == TapVerdict::swallow || !tap.isListening() || !masks(tap, event.type)) return;
    const auto answer = tap.callback(event);
    if (isClaimed(tap, event.keyCode)) verdict = answer;
  });
  return verdict;
}

TapVerdict disableTap(EventType type) {
  auto verdict = TapVerdict::pass;
  forEachTap([&](TapState& tap) {
    tap.enabled = false;
    verdict = tap.callback({.type = type});
  });
  return verdict;
}

void invalidateTap(std::size_t index) {
  std::size_t place = 0;
  forEachTap([&](TapState& tap) {
    if (place++ != index) return;
    tap.alive = false;
    const auto invalidated = std::exchange(tap.invalidated, nullptr);
    invalidated();
  });
}

bool tapIsListening() {
  bool listening = false;
  forEachTap([&](const TapState& tap) { listening = listening || tap.isListening(); });
  return listening;
}

std::set<std::uint16_t> claimedKeys() {
  std::set<std::uint16_t> keys;
  forEachTap([&](const TapState& tap) {
    if (tap.isListening()) keys.insert(tap.claimed.begin(), tap.claimed.end());
  });
  return keys;
}

std::size_t livingTaps() {
  std::size_t count = 0;
  forEachTap([&](const TapState&) { ++count; });
  return count;
}

}  // namespace vorrin::fake
