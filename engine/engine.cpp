#include "engine/engine.h"

#include "platform/run_loop.h"

namespace vorrin {

Engine::Engine() : self_(this, [](Engine*) {}) {}

void Engine::toggle(int macro) {
  if (running[macro]) {
    stop(macro);
    return;
  }
  if (!enabled[macro] || !permitted()) return;
  running[macro] = true;
  const Timer timer(intervals[macro], [observed = std::weak_ptr<Engine>(self_), macro] {
    const auto engine = observed.lock();
    if (engine && engine->running[macro]) engine->emit(macro);
  });
  timers[macro] = timer;
  RunLoop::main().add(timer, RunLoopMode::common);
  if (changed) changed();
}

void Engine::stop(int macro) {
  if (const auto& timer = timers[macro]) timer->invalidate();
  timers[macro].reset();
  running[macro] = false;
  if (changed) changed();
}

void Engine::stopAll() {
  stop(0);
  stop(1);
}

bool Engine::handle(std::uint16_t key, bool down, bool repeated, bool modified) {
  return down ? pressed(key, repeated, modified) : held.erase(key) != 0;
}

bool Engine::pressed(std::uint16_t key, bool repeated, bool modified) {
  if (key == escapeKey) {
    stopAll();
    return false;
  }
  if (modified) return false;
  for (const int macro : {0, 1}) {
    if (keys[macro] != key) continue;
    if (!enabled[macro]) return false;
    if (!repeated && held.insert(key).second) toggle(macro);
    return true;
  }
  return false;
}

}  // namespace vorrin
