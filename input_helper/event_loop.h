#pragma once

#include <systemd/sd-event.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace vorrin::input_helper {

/// What is served first when several things are ready: the user's keys, always.
enum class Priority : int { keyboards = -10, others = 0 };

/// Something that the event loop waits for, as long as the value lasts. What is called may end it.
class Awaited {
 public:
  using Handler = std::function<void()>;

  Awaited() = default;
  /// Calls `ready` whenever the descriptor can be read; never with -1.
  Awaited(sd_event* loop, int descriptor, Priority priority, Handler ready);

  /// Calls `ready` when a time comes that is set later.
  static Awaited timer(sd_event* loop, Priority priority, Handler ready);
  /// Nothing: not before a time is set again.
  void setTime(std::optional<std::chrono::steady_clock::time_point> time);

 private:
  struct Unref {
    void operator()(sd_event_source* source) const { sd_event_source_disable_unref(source); }
  };
  std::unique_ptr<Handler> handler_;
  std::unique_ptr<sd_event_source, Unref> source_;
};

}  // namespace vorrin::input_helper
