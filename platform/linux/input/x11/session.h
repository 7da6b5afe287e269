#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>

#include "platform/event_post.h"
#include "platform/event_tap.h"
#include "platform/linux/input/x11/clicker.h"
#include "platform/linux/input/x11/connection.h"
#include "platform/linux/input/x11/connection_keeper.h"
#include "platform/linux/input/x11/keyboard_map.h"
#include "platform/linux/input/x11/listener.h"
#include "platform/linux/input/x11/main_loop_watch.h"
#include "platform/linux/input/x11/poster.h"

namespace vorrin::x11 {

/// The connections to one server with all that hangs on them, from their opening to their loss.
class Session {
 public:
  Session(std::unique_ptr<Connection> connection, std::unique_ptr<Clicker> clicker);
  ~Session();
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;

  [[nodiscard]] bool lost() const { return connection_->lost() || clicker_->lost(); }

  /// Makes the listener of a tap; null while there is another.
  /// `invalidated` is called once, from the main loop, when the listener becomes useless.
  std::shared_ptr<Listener> listen(std::uint64_t mask, EventTap::Callback callback,
                                   std::function<void()> invalidated);

  /// Lets `listener` go. Its `invalidated` is not called any more.
  void endListening(const Listener& listener);

  /// Attaches the connection to the main loop, once.
  void watch();

  /// Looks at the listener from the main loop, in case it has become useless outside of it.
  void checkLater();

  void post(std::span<const SyntheticEvent> events);

 private:
  void serve();
  /// Whether there is something to serve that its descriptor does not tell of.
  [[nodiscard]] bool isWaiting() const;
  void handleEvents();

  std::unique_ptr<Connection> connection_;
  std::unique_ptr<Clicker> clicker_;
  ConnectionKeeper keeper_;
  Poster poster_;
  KeyboardMap map_;
  std::shared_ptr<Listener> listener_;
  std::function<void()> invalidated_;
  std::optional<MainLoopWatch> watch_;
  bool serving_ = false;
};

}  // namespace vorrin::x11
