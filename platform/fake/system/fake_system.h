#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include "platform/event_post.h"
#include "platform/event_tap.h"

/// The input and session services of a system that tests play: what the program asks of it is
/// recorded, what it answers is set beforehand, and what the user or the system does is called.
namespace vorrin::fake {

struct System {
  // Answers
  bool trusted = true;                   ///< of both queries for the permission
  bool refusesTaps = false;              ///< `EventTap::create` gives nothing
  std::set<std::uint16_t> keysOfOthers;  ///< no tap can claim them
  std::optional<PointerLocation> pointer =
      PointerLocation{};  ///< nothing: the pointer cannot be found

  // Records, in the order of the calls
  std::size_t promptingQueries = 0;     ///< for the permission, with a prompt
  std::vector<std::uint64_t> tapMasks;  ///< arguments of `EventTap::create`, also if refused
  std::vector<bool> tapSwitches;        ///< arguments of `EventTap::setEnabled`
  std::vector<SyntheticEvent> posted;
  std::vector<std::size_t> batches;  ///< how many events each call of `postEvents` had
  std::size_t settingsOpenings = 0;  ///< of the place where the permission is given
};

/// The system as it is now.
System& system();

/// Back to a fresh system with nothing recorded; the taps, observers and activity of before are
/// forgotten without being told.
void resetSystem();

/// Plays an event. Gives the verdict as other programs feel it: `swallow` only when a tap that is
/// attached, enabled and has the type in its mask says so for a key that it may swallow.
TapVerdict feed(const TapEvent& event);

/// The system disables the tap and tells its callback by an event of `type`, one of the two
/// `tapDisabled` types. Gives the callback's verdict.
TapVerdict disableTap(EventType type);

/// The system takes a tap away for good, the oldest of those living unless told otherwise.
void invalidateTap(std::size_t index = 0);

/// Whether there is a tap that is attached and enabled.
bool tapIsListening();

/// What the taps that listen have claimed.
std::set<std::uint16_t> claimedKeys();

/// Number of taps that are still referred to and not invalidated.
std::size_t livingTaps();

/// Makes the program's window gain or lose the keyboard, and tells the observer when that changes
/// anything.
void setApplicationActive(bool active);

/// Workspace notifications, told to everyone who observes.
void sendWillSleep();
/// The session is locked; it is not active from then on.
void sendSessionDidResignActive();
/// A screen saver comes or goes, or the screen is unlocked.
void setSessionActive(bool active);

}  // namespace vorrin::fake
