// Counts what the input helper does for a key and for a click, and prints a table. The reference is
// a bare loop that takes a keyboard for itself and hands what it reads to one of its own. Runs in
// the test machine, as root, whose clock goes by the instructions that were run: a busy computer
// changes nothing. usage: vorrin_helper_cost
#include <fcntl.h>
#include <linux/input.h>
#include <linux/uinput.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include "bench/helper_session.h"
#include "bench/process_figures.h"
#include "bench/table.h"

namespace vorrin::bench {
namespace {

using namespace std::chrono_literals;

/// The machine's clock goes on by so much with each instruction (tests/machine/run).
constexpr double secondsPerInstruction = 2e-9;

constexpr int turns = 200;
/// Long enough for each to be over before the next.
constexpr auto pause = 20ms;

struct Cost {
  double instructions = 0;  ///< the process's own and the kernel's for it
  double systemCalls = 0;
};

void setTracing(const std::string& file, const std::string& text) {
  std::ofstream stream("/sys/kernel/tracing/" + file);
  if (!(stream << text << std::flush)) {
    std::fprintf(stderr, "vorrin: cannot trace system calls (%s)\n", file.c_str());
    std::exit(1);
  }
}

double systemCallsOf(pid_t process, const std::function<void()>& work) {
  setTracing("set_event_pid", std::to_string(process));
  setTracing("trace", "\n");  // empties it
  setTracing("events/raw_syscalls/sys_enter/enable", "1");
  work();
  setTracing("events/raw_syscalls/sys_enter/enable", "0");
  std::ifstream trace("/sys/kernel/tracing/trace");
  int count = 0;
  for (std::string line; std::getline(trace, line);) count += line.starts_with('#') ? 0 : 1;
  return count;
}

/// What `process` does for each of many times that `act` is done.
Cost costOf(pid_t process, const std::function<void()>& act) {
  const auto work = [&act] {
    for (int turn = 0; turn < turns; ++turn) {
      act();
      std::this_thread::sleep_for(pause);
    }
  };
  const double before = figuresOf(process).processorSeconds;
  work();
  const double seconds = figuresOf(process).processorSeconds - before;
  return {seconds / secondsPerInstruction / turns, systemCallsOf(process, work) / turns};
}

[[noreturn]] void runBareLoop(int keyboard) {
  const int clone = ::open("/dev/uinput", O_RDWR | O_CLOEXEC);
  uinput_setup setup{};
  setup.id.bustype = BUS_VIRTUAL;
  std::string("the loop's keyboard").copy(setup.name, sizeof setup.name - 1);
  ::ioctl(clone, UI_SET_EVBIT, EV_KEY);
  ::ioctl(clone, UI_SET_EVBIT, EV_MSC);
  ::ioctl(clone, UI_SET_MSCBIT, MSC_SCAN);
  for (int key = KEY_ESC; key < KEY_MAX; ++key) ::ioctl(clone, UI_SET_KEYBIT, key);
  if (::ioctl(clone, UI_DEV_SETUP, &setup) < 0 || ::ioctl(clone, UI_DEV_CREATE) < 0) ::_exit(1);
  if (::ioctl(keyboard, EVIOCGRAB, 1) < 0) ::_exit(1);
  std::array<input_event, 64> events{};
  while (true) {
    const auto size = ::read(keyboard, events.data(), sizeof events);
    if (size < 0 || ::write(clone, events.data(), static_cast<std::size_t>(size)) < 0) ::_exit(1);
  }
}

/// The least that hands a keyboard's keys on.
class BareLoop {
 public:
  BareLoop(machine::EventWatch& watch, machine::UhidKeyboard& keyboard) {
    process_ = ::fork();
    if (process_ == 0) {
      // Opened anew, for what the watch reads is gone.
      const auto device = std::to_string(watch.device(keyboardPlace, keyboardName));
      runBareLoop(::open(("/proc/self/fd/" + device).c_str(), O_RDWR | O_CLOEXEC));
    }
    until("the bare loop", [&] {
      watch.look();
      keyboard.tap(firstKey);
      return std::ranges::any_of(watch.seen(), [](const machine::SeenEvent& event) {
        return event.device == "the loop's keyboard" && event.type == EV_KEY;
      });
    });
  }
  BareLoop(const BareLoop&) = delete;
  BareLoop& operator=(const BareLoop&) = delete;
  ~BareLoop() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

  [[nodiscard]] pid_t process() const { return process_; }

 private:
  pid_t process_ = 0;
};

Row row(const std::string& what, const Cost& cost, const Cost& reference) {
  return {what, fixed(cost.instructions, 0), fixed(cost.instructions / reference.instructions, 2),
          fixed(cost.systemCalls, 1)};
}

void measure() {
  machine::EventWatch watch;
  machine::UhidKeyboard keyboard(keyboardName);
  waitUntilSetUp(keyboard, watch);
  const auto tap = [&keyboard](int key) { return [&keyboard, key] { keyboard.tap(key); }; };
  const auto bare = [&] {
    const BareLoop loop(watch, keyboard);
    return costOf(loop.process(), tap(KEY_A));
  }();
  const Filtering filtering(watch);
  const pid_t helper = Filtering::helper();
  const auto letter = costOf(helper, tap(KEY_A));
  const auto shortcut = costOf(helper, tap(KEY_TAB));
  const auto click = costOf(helper, [&] { filtering.click(); });
  printTable("What the input helper does, the kernel's part of it included",
             {{"for", "instructions", "of the bare loop's", "system calls"},
              row("a key's press and release by a bare loop (reference)", bare, bare),
              row("a letter's by the helper", letter, bare),
              row("a shortcut's", shortcut, bare),
              row("a click of the macro's", click, bare)});
}

}  // namespace
}  // namespace vorrin::bench

int main() {
  vorrin::machine::allow(vorrin::machine::player);
  vorrin::machine::succeeds(
      "mountpoint -q /sys/kernel/tracing || mount -t tracefs tracefs /sys/kernel/tracing");
  vorrin::bench::measure();
  return 0;
}
