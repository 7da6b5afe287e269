#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "ApplicationServices/ApplicationServices.h"

/// What the stand-in of the Quartz functions answers and what it saw. One at a time; the functions
/// work on the one that lives.
class QuartzStandIn {
 public:
  QuartzStandIn();
  ~QuartzStandIn();
  QuartzStandIn(const QuartzStandIn&) = delete;
  QuartzStandIn& operator=(const QuartzStandIn&) = delete;

  /// What the functions answer.
  bool trusted = true;
  bool refusesTaps = false;  ///< as without the grant, whatever `trusted` says
  bool tapStaysOff = false;  ///< enabling the tap has no effect
  /// Types of events whose making fails; 0 stands for the throw-away event of `CGEventCreate`.
  std::vector<std::uint32_t> refusedEvents;
  CGPoint pointer{0, 0};
  /// The time, in seconds; each stand-in begins long after the one before.
  double now;

  /// Every call in its order, as "Name(argument, ...)", with numbers as they were passed; queries
  /// of an event's fields too.
  std::vector<std::string> calls;
  /// The calls since the last time this was asked.
  std::vector<std::string> takeCalls();

  struct Event {
    std::uint32_t type = 0;
    std::int64_t keyCode = 0;
    std::int64_t autorepeat = 0;
    std::uint64_t flags = 0;
    std::int64_t userData = 0;
    CGPoint location{0, 0};
  };

  /// What was posted, in order.
  std::vector<Event> posted;

  /// Has the tap's callback see `event`; true when it gives back the very event, false when it
  /// swallows it. A disabled tap sees nothing.
  bool deliver(const Event& event);
  /// Has the tap's callback see one of the notices of a disabled tap, with no event; true when it
  /// gives back what it got.
  bool deliverNotice(std::uint32_t type);
  /// Disables the tap and sends that notice, as the system does.
  bool disableTap(std::uint32_t notice);
  /// Disables the tap and tells nobody.
  void switchTapOff();
  /// Takes the tap's port away, as the end of the window server does.
  void invalidatePort();

  /// Lets this time pass and serves every timer of the run loop once.
  void fireTimers(double seconds = 0.1);
  /// Sends a notification to its observers.
  void notify(const std::string& name);

  /// Nothing when there is no tap.
  [[nodiscard]] std::optional<bool> tapEnabled() const;
  [[nodiscard]] std::size_t scheduledTimers() const;
  /// What keeps the system from slowing the program down, by name.
  [[nodiscard]] std::multiset<std::string> activities() const;
  /// Objects that were created and not released yet.
  [[nodiscard]] std::size_t liveObjects() const;
};
