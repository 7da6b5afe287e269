// The limit of what one process can do on X11: posts a click at each absolute deadline of a grid
// and does nothing else. usage: vorrin_bare_clicker NANOSECONDS [CLICKS]     (without a number:
// until it is killed)
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <sys/prctl.h>

#include <cstdlib>
#include <ctime>

int main(int argumentCount, char** arguments) {
  Display* const display = XOpenDisplay(nullptr);
  if (display == nullptr || argumentCount < 2) return EXIT_FAILURE;
  const long interval = std::atol(arguments[1]);
  const long wanted = argumentCount > 2 ? std::atol(arguments[2]) : 0;
  prctl(PR_SET_TIMERSLACK, 1UL);
  timespec deadline{};
  clock_gettime(CLOCK_MONOTONIC, &deadline);
  for (long clicks = 0; wanted == 0 || clicks < wanted; ++clicks) {
    deadline.tv_nsec += interval;
    while (deadline.tv_nsec >= 1'000'000'000) {
      deadline.tv_nsec -= 1'000'000'000;
      ++deadline.tv_sec;
    }
    clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr);
    XTestFakeButtonEvent(display, 1, True, CurrentTime);
    XTestFakeButtonEvent(display, 1, False, CurrentTime);
    XFlush(display);
  }
}
