#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <set>

#include "engine/per_macro.h"
#include "platform/event_tap.h"
#include "platform/timer.h"

namespace vorrin {

/// Virtual key code of Escape, which stops both macros whatever else holds.
inline constexpr std::uint16_t escapeKey = 53;

/// The two repeating macros: their state, a repeating timer for each that runs, and what a key
/// event does to them. Macro 0 repeats a digit key, macro 1 clicks the left mouse button; what
/// that takes is `emit`'s business. Main thread only.
///
/// The closures may call back into the engine. They must not replace themselves while they run.
class Engine {
 public:
  Engine();
  Engine(const Engine&) = delete;
  Engine& operator=(const Engine&) = delete;

  PerMacro<bool> running{false, false};  ///< whether the macro has a live timer
  PerMacro<bool> enabled{true, true};    ///< whether the macro may be started
  /// Seconds between two actions. A change takes effect at the next start. The two start values
  /// differ on purpose: clicking begins at the fastest interval that settings accept.
  PerMacro<double> intervals{0.05, 0.001};
  PerMacro<std::uint16_t> keys{50, 48};  ///< virtual key code of the shortcut: backtick, Tab
  int digit = 1;                         ///< 0 to 9: the digit key that macro 0 presses
  PerMacro<std::optional<Timer>> timers;
  /// Keys whose press toggled a macro and whose release has not been seen yet.
  std::set<std::uint16_t> held;
  std::optional<EventTap> tap;    ///< the keyboard event tap, absent while there is no listener
  std::function<void()> changed;  ///< called after every start and every stop; may be empty
  std::function<void(int macro)> emit = [](int) {};       ///< performs one action
  std::function<bool()> permitted = [] { return true; };  ///< asked before every start

  /// Stops the macro if it runs. Otherwise starts it, if it is enabled and then `permitted` says
  /// yes; its first action comes one interval later.
  void toggle(int macro);

  /// Stops the macro: no action follows. Calls `changed` also when the macro did not run.
  void stop(int macro);

  /// Stops macro 0, then macro 1.
  void stopAll();

  /// Acts on a key event of the user's. `key` is a virtual key code; `down` tells a press from a
  /// release; `repeated` marks a press that the keyboard made by itself; `modified` says that
  /// Command, Option, Control or Shift is held. True when the event is the program's own business
  /// and no other program may see it.
  bool handle(std::uint16_t key, bool down, bool repeated, bool modified);

 private:
  bool pressed(std::uint16_t key, bool repeated, bool modified);

  /// What the timers' closures observe the engine through: it owns nothing and ends with the
  /// engine.
  std::shared_ptr<Engine> self_;
};

}  // namespace vorrin
