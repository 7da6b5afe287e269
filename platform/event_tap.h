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
/// refer to the same tap; with the last of them it ends. The system may disable it (its callback is
/// then told by an event of one of the two `tapDisabled` types, which no verdict can swallow) or
/// take it away for good (`invalidated`).
class EventTap {
 public:
  /// Called from the main loop for the events of the mask, in the order the user made them. Which
  /// keys it is asked about besides Escape and those that can be shortcuts is the system's choice.
  using Callback = TapVerdict (*)(const TapEvent&);

  /// Makes a tap that claims no key, not yet attached and not yet enabled.
  /// `mask`: one bit an event type, bit number = raw value.
  /// `invalidated`: called once from the main loop, never within a call of the tap, when the tap
  /// ends by itself (its connection is lost, a key it claims is lost to another program). The tap
  /// is dead by then and a new one has to be made; not called once the tap has ended otherwise.
  /// Nothing comes back when the system refuses: the process is not trusted, or the system has no
  /// such service.
  static std::optional<EventTap> create(std::uint64_t mask, Callback callback,
                                        std::function<void()> invalidated);

  /// Attaches the tap to the main run loop, in the common modes.
  void addToMainRunLoop() const;

  /// Turns delivery on or off. A disabled tap lets every event pass unseen.
  void setEnabled(bool enabled) const;

  /// Claims exactly these keys: the callback may swallow them from now on, and the verdict
  /// `swallow` has no effect on any other. Systems that hand out keys one by one need it; on the
  /// others it is always granted. False when another program holds one of them: then none is
  /// claimed.
  [[nodiscard]] bool claim(std::span<const std::uint16_t> keyCodes) const;

  /// Whether `claim` would be granted these keys now. What is claimed stays as it is.
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> keyCodes) const;

 private:
  struct Native;
  explicit EventTap(std::shared_ptr<Native> native);
  std::shared_ptr<Native> native_;
};

}  // namespace vorrin
