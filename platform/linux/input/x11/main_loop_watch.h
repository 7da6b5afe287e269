#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <memory>

namespace vorrin::x11 {

/// How events are taken: what has been read from the socket, or what can be read as well.
using NextEvent = xcb_generic_event_t* (*)(xcb_connection_t*);

/// Runs `serve` on the main loop whenever the connection can be read, and before the loop goes to
/// sleep for what has been read already. The second is needed because a reply takes along the
/// events before it, and a flush may: they are in memory then, and the socket stays silent.
class MainLoopWatch {
 public:
  /// The main loop must exist. `serve` may make the watch go away.
  MainLoopWatch(xcb_connection_t* connection, std::function<void(NextEvent)> serve);

  /// Stops watching the socket, which would be readable for ever after its end.
  void closeSocket();

 private:
  struct Native;
  /// Not deleted at once: it may be the one that is calling.
  struct DeleteLater {
    void operator()(Native* native) const;
  };
  std::unique_ptr<Native, DeleteLater> native_;
};

}  // namespace vorrin::x11
