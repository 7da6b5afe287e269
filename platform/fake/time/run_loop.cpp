#include "platform/run_loop.h"

#include "platform/fake/time/fake_time.h"
#include "platform/fake/time/timer_state.h"

namespace vorrin {

RunLoop RunLoop::main() {
  return {};
}

void RunLoop::add(const Timer& timer, RunLoopMode mode) const {
  fake::schedule(timer.native_, mode);
}

void RunLoop::runFor(double seconds) const {
  fake::advance(seconds);
}

}  // namespace vorrin
