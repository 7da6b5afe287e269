#include <chrono>
#include <csignal>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/statistics.h"
#include "bench/table.h"

namespace vorrin::bench {

namespace {

using x11_tests::Client;
using x11_tests::ClientEvent;

constexpr int rounds = 10;

/// Milliseconds from the start of a program to the moment its window takes the focus from `front`.
double timeToWindow(Client& front, const std::function<void()>& start) {
  const auto begin = std::chrono::steady_clock::now().time_since_epoch();
  start();
  const auto lost =
      front.readUntil([](const ClientEvent& event) { return event.kind == "FocusOut"; }).back();
  return static_cast<double>(lost.arrival -
                             std::chrono::duration_cast<std::chrono::nanoseconds>(begin).count()) /
         1e6;
}

/// Waits until `front` has the focus again after a window in front of it closed.
void waitForFocus(Client& front) {
  front.readUntil([](const ClientEvent& event) { return event.kind == "FocusIn"; });
}

}  // namespace

void measureStartup() {
  Stage stage;
  Client front(stage.desktop.display());
  std::vector<double> plain;
  std::vector<double> vorrin;
  for (int round = 0; round < rounds; ++round) {
    std::unique_ptr<Client> client;
    plain.push_back(
        timeToWindow(front, [&] { client = std::make_unique<Client>(stage.desktop.display()); }));
    client.reset();
    waitForFocus(front);
    std::unique_ptr<x11_tests::Program> program;
    vorrin.push_back(timeToWindow(front, [&] { program = startVorrin(stage); }));
    program->process().signal(SIGTERM);
    program->process().waitForEnd();
    waitForFocus(front);
  }
  printTable("From the start of the program to its window, in ms (10 rounds)",
             {{"who", "p50", "worst", "of the plain window's"},
              {"a plain X11 window (reference)", fixed(median(plain), 1),
               fixed(percentile(plain, 1), 1), "1.00"},
              {"Vorrin", fixed(median(vorrin), 1), fixed(percentile(vorrin, 1), 1),
               fixed(median(vorrin) / median(plain), 2)}});
}

}  // namespace vorrin::bench
