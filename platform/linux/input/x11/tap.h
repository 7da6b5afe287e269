#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <span>

#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/key_flow.h"
#include "platform/linux/input/x11/key_grabs.h"
#include "platform/linux/input/x11/keyboard_map.h"
#include "platform/linux/input/x11/poster.h"

class QSocketNotifier;

namespace vorrin::x11 {

/// An event tap on the X server, as `EventTap` describes it, for key events, and the way to post
/// there: both are one connection, which ends with the tap. The tap is asked about the claimed
/// keys, pressed with no modifier but locks, and about Escape; the program's own posts are left
/// out. A verdict of `pass` on a claimed key has it sent on by XTEST.
class Tap {
 public:
  /// Connects to the server that DISPLAY names; null when that cannot be done.
  static std::unique_ptr<Tap> create(std::uint64_t mask, EventTap::Callback callback,
                                     std::function<void()> invalidated);

  Tap(Connection connection, std::uint64_t mask, EventTap::Callback callback,
      std::function<void()> invalidated);
  ~Tap();
  Tap(const Tap&) = delete;
  Tap& operator=(const Tap&) = delete;

  void addToMainRunLoop();
  void setEnabled(bool enabled) { enabled_ = enabled; }
  [[nodiscard]] bool claim(std::span<const std::uint16_t> virtualKeys);
  [[nodiscard]] bool canClaim(std::span<const std::uint16_t> virtualKeys) const;

  /// As `postEvents`. Clicks happen at the pointer wherever it is.
  void post(std::span<const SyntheticEvent> events);

 private:
  /// How events are taken: what has been read from the socket, or what can be read as well.
  using NextEvent = xcb_generic_event_t* (*)(xcb_connection_t*);

  void serve(NextEvent next);
  /// Whether there was anything.
  bool readAll(NextEvent next);
  void read(const xcb_generic_event_t& event);
  void followChanges();
  void endIfUseless();
  [[nodiscard]] bool wants(EventType type) const;

  Connection connection_;
  const std::uint64_t mask_;
  const EventTap::Callback callback_;
  std::function<void()> invalidated_;
  bool enabled_ = false;
  KeyboardMap map_;
  Poster poster_;
  KeyGrabs grabs_;
  KeyFlow flow_;
  bool mapChanged_ = false;
  bool keyboardsChanged_ = false;
  bool refused_ = false;  ///< one of the claimed keys is another program's by now
  /// Not deleted at once: it may be the one that is calling.
  struct EndWatch {
    void operator()(QSocketNotifier* watch) const;
  };
  std::unique_ptr<QSocketNotifier, EndWatch> watch_;
};

}  // namespace vorrin::x11
