#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "input_helper/protocol/protocol.h"
#include "platform/event_tap.h"

namespace vorrin::helper {

/// An event tap that the helper asks, as `EventTap` describes it. Only the six shortcut keys,
/// pressed without a modifier, and Escape ever arrive.
class Tap {
 public:
  using Configured = std::function<void(const helper_protocol::Configure&)>;

  /// `configured` is told whenever the helper has to know something new.
  Tap(std::uint64_t mask, EventTap::Callback callback, std::function<void()> invalidated,
      Configured configured);
  ~Tap();
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  /// The connection to the helper is watched by the main run loop already.
  static void addToMainRunLoop() {}
  void setEnabled(bool enabled);
  /// Keys are granted as long as the helper is there: it asks whoever listens, before anybody else.
  [[nodiscard]] bool claim(std::span<const std::uint16_t> keyCodes);
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> keyCodes) const;

  /// What the callback, which may make the tap go away, says of the key. It counts for a question;
  /// a repeat and a release follow their press whatever the verdict.
  TapVerdict tell(const helper_protocol::KeyMoved& moved) const;
  /// A question was answered too late.
  void tellDisabled();
  /// Ends the tap for good: nothing is told or configured any more.
  void end();
  /// The same, with a word to whoever made it, who may make it go away.
  void invalidate();

 private:
  void configure() const;

  std::uint64_t mask_;
  helper_protocol::ShortcutSet keys_ = 0;
  EventTap::Callback callback_;
  std::function<void()> invalidated_;
  Configured configured_;
  bool enabled_ = false;
};

}  // namespace vorrin::helper
