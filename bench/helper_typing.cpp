// Measures what typing goes through when the input helper holds the keyboard, and prints a table.
// The reference is the same keyboard, read without the helper. Runs in the test machine, as root.
// usage: vorrin_helper_typing
#include <linux/input-event-codes.h>
#include <linux/input.h>
#include <poll.h>
#include <sched.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <stop_token>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bench/helper_session.h"
#include "bench/typing_table.h"

namespace vorrin::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using machine::EventWatch;
using machine::UhidKeyboard;

/// A key's press or release.
using Move = std::pair<int, bool>;

struct Arrival {
  Move move;
  Clock::time_point at;
};

/// Has the kernel run a thread (0: this one) before all ordinary ones.
void makeUrgent(pid_t thread, int priority) {
  const sched_param parameters{.sched_priority = priority};
  if (::sched_setscheduler(thread, SCHED_RR | SCHED_RESET_ON_FORK, &parameters) == 0) return;
  std::perror("vorrin: sched_setscheduler");
  std::exit(1);
}

/// The typist and the reader are measured with, so nothing may hold them up.
constexpr int measuringPriority = 10;

/// Reads a device as a desktop would, as soon as anything comes.
class Reader {
 public:
  explicit Reader(int device)
      : thread_([this, device](const std::stop_token& stop) { read(stop, device); }) {}

  /// Everything that came, once nothing has come for a while.
  std::vector<Arrival> finish() {
    for (auto count = count_.load();; count = count_.load()) {
      std::this_thread::sleep_for(500ms);
      if (count == count_.load()) break;
    }
    thread_.request_stop();
    thread_.join();
    return std::move(arrivals_);
  }

 private:
  void read(const std::stop_token& stop, int device) {
    makeUrgent(0, measuringPriority);
    std::array<input_event, 64> events;
    pollfd waited{device, POLLIN, 0};
    while (!stop.stop_requested()) {
      if (::poll(&waited, 1, 100) <= 0) continue;
      const auto size = ::read(device, events.data(), sizeof events);
      const auto now = Clock::now();
      for (std::size_t i = 0; size > 0 && i < static_cast<std::size_t>(size) / sizeof(input_event);
           ++i) {
        const auto& event = events[i];
        if (event.type == EV_SYN && event.code == SYN_DROPPED) {
          std::fprintf(stderr, "vorrin: the reader itself came too late; the counts are void\n");
        }
        if (event.type != EV_KEY || event.value == 2 || event.code == firstKey) continue;
        arrivals_.push_back({{event.code, event.value == 1}, now});
        ++count_;
      }
    }
  }

  std::vector<Arrival> arrivals_;
  std::atomic<std::size_t> count_ = 0;
  std::jthread thread_;
};

/// Programs that want all the time of the processors there is.
class BusyLoops {
 public:
  explicit BusyLoops(unsigned count) {
    for (unsigned i = 0; i < count; ++i) {
      const pid_t loop = ::fork();
      if (loop == 0) {
        for (volatile unsigned turns = 0;;) turns = turns + 1;
      }
      loops_.push_back(loop);
    }
  }
  BusyLoops(const BusyLoops&) = delete;
  BusyLoops& operator=(const BusyLoops&) = delete;
  ~BusyLoops() {
    for (const pid_t loop : loops_) {
      ::kill(loop, SIGKILL);
      ::waitpid(loop, nullptr, 0);
    }
  }

 private:
  std::vector<pid_t> loops_;
};

Typed compare(const std::vector<Arrival>& typed, const std::vector<Arrival>& arrived) {
  Typed result;
  result.lost = typed.size() > arrived.size() ? typed.size() - arrived.size() : 0;
  for (std::size_t place = 0; place < typed.size(); ++place) {
    if (place >= arrived.size() || arrived[place].move != typed[place].move) {
      ++result.wrong;
    } else if (typed[place].move.second) {
      const std::chrono::duration<double, std::milli> latency = arrived[place].at - typed[place].at;
      result.latencies.push_back(latency.count());
    }
  }
  return result;
}

/// Types letters at a steady rate, and a shortcut among them now and then, held over the next key.
Typed typeAt(double perSecond, UhidKeyboard& keyboard, Reader reader, bool withShortcuts) {
  std::vector<Arrival> typed;
  const auto gap =
      std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(1 / perSecond));
  auto next = Clock::now() + gap;
  const auto move = [&](int key, bool down) {
    typed.push_back({{key, down}, Clock::now()});
    down ? keyboard.press(key) : keyboard.release(key);
  };
  for (int count = 0; count < typedKeys; ++count, next += gap) {
    std::this_thread::sleep_until(next);
    const bool isAfterShortcut = withShortcuts && count % shortcutEvery == 0;
    if (isAfterShortcut) {
      keyboard.press(KEY_TAB);
      std::this_thread::sleep_until(next + gap / 4);
    }
    const int key = KEY_A + count % 9;
    move(key, true);
    std::this_thread::sleep_until(next + gap / 2);
    move(key, false);
    if (isAfterShortcut) keyboard.release(KEY_TAB);
  }
  return compare(typed, reader.finish());
}

void measure(const std::string& title) {
  std::vector<Row> rows{typingHeading()};
  for (const double perSecond : typingRates) {
    EventWatch watch;
    UhidKeyboard keyboard(keyboardName);
    waitUntilSetUp(keyboard, watch);
    const Typed plain =
        typeAt(perSecond, keyboard, Reader(watch.device(keyboardPlace, keyboardName)), false);
    rows.push_back(typingRow(perSecond, "nobody holds the keyboard (reference)", plain, plain));
    const Filtering filtering(watch);
    const int clone = watch.device(clonePlace, keyboardName);
    const Typed passed = typeAt(perSecond, keyboard, Reader(clone), false);
    rows.push_back(typingRow(perSecond, "the helper holds it", passed, plain));
    const Typed filtered = typeAt(perSecond, keyboard, Reader(clone), true);
    rows.push_back(typingRow(perSecond, "and a shortcut held every 11th key", filtered, plain));
    makeUrgent(filtering.helper(), 1);
    const Typed urgent = typeAt(perSecond, keyboard, Reader(clone), false);
    rows.push_back(
        typingRow(perSecond, "the helper, in real time (set from outside)", urgent, plain));
  }
  printTable(title, rows);
}

}  // namespace
}  // namespace vorrin::bench

int main() {
  using namespace vorrin::bench;
  vorrin::machine::allow(vorrin::machine::player);
  makeUrgent(0, measuringPriority);
  const unsigned processors = std::thread::hardware_concurrency();
  std::printf("An emulated machine with %u processors\n", processors);
  measure("Typing through the input helper, from the press to its arrival (440 keys)");
  const BusyLoops loops(2 * processors);
  measure("The same beside " + std::to_string(2 * processors) + " busy loops");
  return 0;
}
