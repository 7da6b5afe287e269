#pragma once

#include <functional>
#include <memory>

namespace vorrin::x11 {

/// Runs `serve` on the main loop whenever `fileDescriptor` can be read, and before the loop goes to
/// sleep while `isWaiting` says that there is work. The second is needed because a reply read from
/// the server takes along the events before it: they are in memory then, and the descriptor stays
/// silent. `isWaiting` is asked after every tick of a macro, so it must not talk to the server.
class MainLoopWatch {
 public:
  /// The main loop must exist. `fileDescriptor` stays the caller's.
  MainLoopWatch(int fileDescriptor, std::function<void()> serve, std::function<bool()> isWaiting);
  ~MainLoopWatch();
  MainLoopWatch(const MainLoopWatch&) = delete;
  MainLoopWatch& operator=(const MainLoopWatch&) = delete;

  /// Runs `serve` once more, from the loop.
  void wake();

  /// Stops watching the descriptor, which would be readable for ever after its end. `wake` still
  /// works.
  void closeDescriptor();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace vorrin::x11
