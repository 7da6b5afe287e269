#include "bridge/permission_watch.h"

#include <utility>

#include "bridge/keyboard_listener.h"
#include "bridge/program_engine.h"
#include "platform/accessibility.h"
#include "platform/run_loop.h"

namespace vorrin {
namespace {

constexpr double pollInterval = 1.0;

}  // namespace

void permissionWatchTick(const std::function<void()>& connect,
                         const std::function<void()>& refresh) {
  if (engine.tap) {
    updateClaimedKeys();
  } else if (isProcessTrusted()) {
    connect();
  }
  refresh();
}

Timer schedulePermissionPoll(std::function<void()> connect, std::function<void()> refresh) {
  Timer poll(pollInterval, [connect = std::move(connect), refresh = std::move(refresh)] {
    permissionWatchTick(connect, refresh);
  });
  RunLoop::main().add(poll, RunLoopMode::standard);
  return poll;
}

}  // namespace vorrin
