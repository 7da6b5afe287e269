// Runs the click macro by the program's own engine, posting by its own way through the X server,
// for so many ticks. Prints how often memory was allocated in the second half of them. usage:
// vorrin_ticker TICKS
#include <atomic>
#include <cstdio>
#include <cstdlib>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "platform/run_loop.h"

// glibc's own names of what is replaced here, so that what any library allocates is counted.
// NOLINTBEGIN(bugprone-reserved-identifier,readability-identifier-naming)
extern "C" void* __libc_malloc(std::size_t size);
extern "C" void* __libc_calloc(std::size_t count, std::size_t size);
extern "C" void* __libc_realloc(void* memory, std::size_t size);
// NOLINTEND(bugprone-reserved-identifier,readability-identifier-naming)

namespace {

std::atomic<long> allocations = 0;

}  // namespace

extern "C" void* malloc(std::size_t size) {
  ++allocations;
  return __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size) {
  ++allocations;
  return __libc_calloc(count, size);
}

extern "C" void* realloc(void* memory, std::size_t size) {
  ++allocations;
  return __libc_realloc(memory, size);
}

int main(int argumentCount, char** arguments) {
  using vorrin::engine;
  if (argumentCount != 2) return EXIT_FAILURE;
  const long wanted = std::atol(arguments[1]);
  long ticks = 0;
  long before = 0;
  engine.intervals[1] = 0.001;
  engine.enabled[1] = true;
  engine.permitted = [] { return true; };
  engine.emit = [&](int macro) {
    vorrin::emitMacro(macro, {});
    ++ticks;
    if (ticks == wanted / 2) before = allocations;
    if (ticks < wanted) return;
    std::printf("%ld\n", allocations - before);
    std::exit(EXIT_SUCCESS);
  };
  // Clicks go the tap's way; nobody listens here.
  engine.tap = vorrin::EventTap::create(
      0, [](const vorrin::TapEvent&) { return vorrin::TapVerdict::pass; }, [] {});
  engine.toggle(1);
  // Never long enough: the last tick ends the process.
  vorrin::RunLoop::main().runFor(3600);
}
