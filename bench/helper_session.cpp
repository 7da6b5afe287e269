#include "bench/helper_session.h"

#include <poll.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <stop_token>

namespace vorrin::bench {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

void until(const char* what, const std::function<bool()>& condition) {
  for (const auto end = Clock::now() + 30s; Clock::now() < end;) {
    if (condition()) return;
    std::this_thread::sleep_for(5ms);
  }
  std::fprintf(stderr, "vorrin: waited in vain for %s\n", what);
  std::exit(1);
}

void waitUntilSetUp(machine::UhidKeyboard& keyboard, machine::EventWatch& watch) {
  until("the keyboard", [&] {
    watch.look();
    if (watch.has(keyboardPlace, keyboardName)) keyboard.tap(firstKey);
    return !watch.keys().empty();
  });
}

Filtering::Filtering(machine::EventWatch& watch) {
  until("the helper", [this] {
    peer_.listen();
    return !peer_.saidOf<helper_protocol::Availability>().empty();
  });
  peer_.configure({KEY_TAB});
  until("the helper's grab", [&] {
    watch.look();
    return watch.has(clonePlace, keyboardName) && !watch.isFree(keyboardPlace, keyboardName);
  });
  answering_ = std::jthread([this](const std::stop_token& stop) {
    pollfd waited{peer_.connection(), POLLIN, 0};
    while (!stop.stop_requested()) {
      if (::poll(&waited, 1, 100) > 0) peer_.listen();
    }
  });
}

pid_t Filtering::helper() {
  const auto process =
      machine::outputOf("systemctl show --property=MainPID --value vorrin-input-helper");
  return std::atoi(process.c_str());
}

}  // namespace vorrin::bench
