// Loaded into a program before its libraries: sets the wall clock that it sees, and nothing else.
// The file that VORRIN_WALL_CLOCK names holds the seconds added to it, a 64-bit number that may
// change at any time. Without the C++ library and the sanitizers, for it must fit every program.
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/time.h>
#include <time.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

namespace {

std::int64_t shift() {
  static const volatile std::int64_t* const seconds = [] {
    const char* const name = ::getenv("VORRIN_WALL_CLOCK");
    const int file = name == nullptr ? -1 : ::open(name, O_RDONLY | O_CLOEXEC);
    if (file < 0) ::_exit(125);
    return static_cast<const std::int64_t*>(
        ::mmap(nullptr, sizeof(std::int64_t), PROT_READ, MAP_SHARED, file, 0));
  }();
  return *seconds;
}

}  // namespace

extern "C" {

int clock_gettime(clockid_t clock, timespec* time) noexcept {
  const long result = ::syscall(SYS_clock_gettime, clock, time);
  if (clock == CLOCK_REALTIME || clock == CLOCK_REALTIME_COARSE) time->tv_sec += shift();
  return static_cast<int>(result);
}

int gettimeofday(timeval* time, void* /*zone*/) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  *time = {now.tv_sec, now.tv_nsec / 1000};
  return 0;
}

time_t time(time_t* result) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (result != nullptr) *result = now.tv_sec;
  return now.tv_sec;
}
}
