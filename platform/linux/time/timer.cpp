#include "platform/timer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <QEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <utility>

#include "platform/fatal_error.h"
#include "platform/linux/time/real_time.h"
#include "platform/linux/time/timer_native.h"

namespace vorrin {

namespace {

// What NSTimer puts in the place of an interval that is not above 0.
constexpr double shortestInterval = 0.0001;
// A century: beyond every use, and its sum with any time of the clock is still a time.
constexpr double longestInterval = 100.0 * 366 * 24 * 3600;

std::chrono::nanoseconds toNanoseconds(double seconds) {
  if (!(seconds > 0)) seconds = shortestInterval;
  return std::chrono::nanoseconds(
      std::max(1LL, std::llround(std::min(seconds, longestInterval) * 1e9)));
}

timespec toTimespec(std::chrono::nanoseconds time) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
  return {.tv_sec = seconds.count(), .tv_nsec = (time - seconds).count()};
}

std::chrono::nanoseconds now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

}  // namespace

Timer::Timer(double interval, std::function<void()> block)
    : native_(std::make_shared<Native>(toNanoseconds(interval), std::move(block))) {}

void Timer::invalidate() const {
  // The block released here may own the very copy this is called on.
  const auto native = native_;
  native->invalidate();
}

bool Timer::isValid() const {
  return native_->valid;
}

Timer::Native::Native(std::chrono::nanoseconds timerInterval, std::function<void()> timerBlock)
    : interval(timerInterval), block(std::move(timerBlock)) {}

std::vector<std::shared_ptr<Timer::Native>>& Timer::Native::scheduled() {
  // Never destroyed: the blocks of timers still scheduled at the end of the process may own what is
  // gone by then.
  static auto& timers = *new std::vector<std::shared_ptr<Native>>;
  return timers;
}

void Timer::Native::schedule(RunLoopMode runLoopMode) {
  clock = FileDescriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC));
  const itimerspec grid{.it_interval = toTimespec(interval),
                        .it_value = toTimespec(now() + interval)};
  if (::timerfd_settime(clock.get(), TFD_TIMER_ABSTIME, &grid, nullptr) != 0) {
    fatalError("The system gave no timer");
  }
  source = std::make_unique<Source>(*this);
  scheduled().push_back(shared_from_this());
  mode = runLoopMode;
  if (mode == RunLoopMode::common) realTimeTimerWasScheduled();
}

void Timer::Native::fire() {
  if (!valid || firing) return;
  const auto alive = shared_from_this();
  firing = true;
  block();
  firing = false;
  if (!valid) block = nullptr;
}

void Timer::Native::invalidate() {
  valid = false;
  if (source) {
    source->setEnabled(false);
    // Qt may be delivering the very event that led here.
    if (firing) {
      source.release()->deleteLater();
    } else {
      source.reset();
    }
  }
  clock = FileDescriptor();
  // Emptied before what it owned goes, which may end up here again.
  const auto released = firing ? nullptr : std::exchange(block, nullptr);
  const bool wasScheduled = std::erase(scheduled(), shared_from_this()) > 0;
  if (wasScheduled && mode == RunLoopMode::common) realTimeTimerEnded();
}

Timer::Native::Source::Source(Native& timer)
    : QSocketNotifier(timer.clock.get(), Read), timer_(timer) {}

bool Timer::Native::Source::event(QEvent* event) {
  if (event->type() != QEvent::SockAct) return QSocketNotifier::event(event);
  // The count of expirations is read to clear it and has no other use: a late timer fires once.
  std::uint64_t expirations = 0;
  if (::read(static_cast<int>(socket()), &expirations, sizeof expirations) > 0) timer_.fire();
  return true;
}

}  // namespace vorrin
