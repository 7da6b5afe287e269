#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "platform/event_tap.h"
#include "platform/macos/input/core_foundation_handle.h"
#include "platform/macos/input/trust_watch.h"

namespace vorrin {

/// The tap's Mach port and what keeps it harmless. A tap that is enabled while the program is not
/// trusted holds back all input of the session until the system times it out, so delivery is on
/// only while it is wanted and trusted. Losing the grant turns the tap off before anything else,
/// then tells the callback as the system tells of a tap it disabled; the grant's return turns it on
/// again. One that the system disabled is turned on again only when another tap shows that the
/// grant holds, and one that it disables time and again is given up for good.
struct EventTap::Native {
 public:
  /// Null when the system refuses the tap, or would refuse it, and once one was given up. The
  /// program has one tap at a time.
  static std::shared_ptr<Native> create(std::uint64_t mask, Callback callback,
                                        std::function<void()> invalidated);
  ~Native();
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  void addToMainRunLoop();
  void setEnabled(bool enabled);

 private:
  Native(CoreFoundationHandle<CFMachPortRef> port, Callback callback,
         std::function<void()> invalidated);

  static CGEventRef filter(CGEventTapProxy proxy, CGEventType type, CGEventRef event,
                           void* userInfo);
  static void portInvalidated(CFMachPortRef port, void* info);

  void deliver(bool on);
  void lookAfter();
  void wasDisabled(EventType notice);
  void tellInvalidated();

  CoreFoundationHandle<CFMachPortRef> port_;
  CFMachPortInvalidationCallBack systemsCallback_;
  Callback callback_;
  std::function<void()> invalidated_;
  bool wanted_ = false;
  bool delivering_ = false;
  /// Every key of the session waits for this program now.
  std::shared_ptr<void> activity_;
  std::optional<TrustWatch> trustWatch_;
};

}  // namespace vorrin
