#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/event_post.h"
#include "platform/event_tap.h"

namespace vorrin::x11 {

class Listener;
class Session;

/// An event tap on the X server, as `EventTap` describes it, for key events. A key of the
/// swallowable set is held back only when no modifier is down with it; a verdict of `pass` on such
/// a key has it sent on by XTEST. Of keys outside the set repeats are not seen.
class Tap {
 public:
  Tap(std::shared_ptr<Session> session, std::shared_ptr<Listener> listener);
  ~Tap();
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  void addToMainRunLoop();
  void setEnabled(bool enabled);
  [[nodiscard]] bool claim(std::span<const std::uint16_t> keyCodes);
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> keyCodes);

 private:
  std::shared_ptr<Session> session_;
  std::shared_ptr<Listener> listener_;
};

/// Keyboard listening and input synthesis on the X server that DISPLAY names, which asks no
/// permission of its clients. A connection that breaks is not made again: the widget library ends
/// the process then.
class Backend {
 public:
  /// One tap at a time. Connects to the server when there is no connection yet.
  std::unique_ptr<Tap> createTap(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated);

  /// Clicks happen at the pointer wherever it is, so the numbers stay 0.
  std::optional<PointerLocation> pointerLocation();

  void post(std::span<const SyntheticEvent> events);

 private:
  [[nodiscard]] bool connect();

  std::shared_ptr<Session> session_;
};

}  // namespace vorrin::x11
