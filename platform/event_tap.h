#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

namespace vorrin {

/// Kinds of input event, with the raw values that Quartz gives them.
enum class EventType : std::uint32_t {
  leftMouseDown = 1,
  leftMouseUp = 2,
  keyDown = 10,
  keyUp = 11,
  tapDisabledByTimeout = 0xFFFFFFFE,
  tapDisabledByUserInput = 0xFFFFFFFF,
};

/// Bits of `TapEvent::flags`, with the raw values that Quartz gives them.
namespace event_flags {
inline constexpr std::uint64_t maskAlphaShift = 0x10000;
inline constexpr std::uint64_t maskShift = 0x20000;
inline constexpr std::uint64_t maskControl = 0x40000;
inline constexpr std::uint64_t maskAlternate = 0x80000;
inline constexpr std::uint64_t maskCommand = 0x100000;
inline constexpr std::uint64_t maskNumericPad = 0x200000;
}  // namespace event_flags

/// One event as the tap's callback sees it.
struct TapEvent {
  EventType type = EventType::keyDown;
  std::int64_t keyCode = 0;     ///< macOS virtual key code: a key position, not a character
  std::int64_t autorepeat = 0;  ///< not 0 for a key-down that the keyboard made by itself
  std::uint64_t flags = 0;      ///< bits of `event_flags`
  std::int64_t userData = 0;    ///< the value `postEvents` was given, 0 for other programs' events
};

/// What becomes of an event after the callback saw it.
enum class TapVerdict { pass, swallow };

/// A system-wide filter in front of all other programs, for the event types of its mask. Copies
/// refer to the same tap. The system may disable it (its callback is then told by an event of one
/// of the two `tapDisabled` types, which no verdict can swallow) or take it away for good
/// (`invalidated`).
class EventTap {
 public:
  /// Called on the main thread for every event of the mask, in the order the user made them.
  using Callback = TapVerdict (*)(const TapEvent&);

  /// Makes a tap, not yet attached and not yet enabled.
  /// `mask`: one bit an event type, bit number = raw value.
  /// `swallowable`: see `setSwallowable`.
  /// `invalidated`: called once on the main thread when the tap ends by itself (its connection is
  /// lost, its keys cannot be held any more); the tap is dead by then and a new one has to be made.
  /// Nothing comes back when the system refuses: the process is not trusted, or another program
  /// holds one of the keys.
  static std::optional<EventTap> create(std::uint64_t mask,
                                        std::span<const std::uint16_t> swallowable,
                                        Callback callback, std::function<void()> invalidated);

  /// Attaches the tap to the main run loop, in the common modes.
  void addToMainRunLoop() const;

  /// Turns delivery on or off. A disabled tap lets every event pass unseen.
  void setEnabled(bool enabled) const;

  /// Names the key codes whose events the callback may swallow from now on; events of all other
  /// keys are only seen. A verdict `swallow` for a key outside this set has no effect. Systems that
  /// take keys away one by one need it, the others ignore it. False when the system refuses one of
  /// them (another program holds it): the tap is then of no use and should be dropped.
  [[nodiscard]] bool setSwallowable(std::span<const std::uint16_t> keyCodes) const;

 private:
  struct Native;
  explicit EventTap(std::shared_ptr<Native> native);
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
