#pragma once

#include <QSocketNotifier>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"
#include "platform/run_loop.h"
#include "platform/timer.h"

namespace vorrin {

/// What all copies of a timer share.
struct Timer::Native : std::enable_shared_from_this<Timer::Native> {
  Native(std::chrono::nanoseconds timerInterval, std::function<void()> timerBlock);

  /// The timers that the run loop keeps alive.
  static std::vector<std::shared_ptr<Native>>& scheduled();

  /// Starts the clock; the first expiration comes one interval from now.
  void schedule(RunLoopMode runLoopMode);

  /// Runs the block, unless the timer is invalid or its block is running already: a block that
  /// serves the run loop itself is not entered again.
  void fire();

  /// Stops the clock and releases the block, at the end of the block when that is running.
  void invalidate();

  /// Takes the expirations of the clock from Qt's event loop. It overrides `event` and leaves the
  /// signal unused: a firing needs no connection, and Qt allocates nothing on its way here.
  class Source final : public QSocketNotifier {
   public:
    explicit Source(Native& timer);
    bool event(QEvent* event) override;

   private:
    Native& timer_;
  };

  const std::chrono::nanoseconds interval;
  RunLoopMode mode = RunLoopMode::standard;
  std::function<void()> block;
  bool valid = true;
  bool firing = false;
  FileDescriptor clock;
  std::unique_ptr<Source> source;
};

}  // namespace vorrin
