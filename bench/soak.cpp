#include <cmath>
#include <cstdio>
#include <string>

#include "bench/process_figures.h"
#include "bench/sections.h"
#include "bench/session.h"
#include "bench/table.h"

namespace vorrin::bench {

namespace {

using x11_tests::Client;
using x11_tests::ClientEvent;

constexpr double interval = 0.001;
constexpr long progressEvery = 1'000'000;

bool isClick(const ClientEvent& event) {
  return event.kind == "ButtonPress";
}

/// When a click arrived, in seconds, after `count` more of them.
double arrivalAfter(Client& client, long count) {
  const auto isLast = [&count](const ClientEvent& event) { return isClick(event) && --count == 0; };
  return static_cast<double>(client.readUntil(isLast).back().arrival) / 1e9;
}

}  // namespace

void measureSoak(long clicks) {
  constexpr long settling = 1000;
  constexpr long atATime = 1000;
  Stage stage;
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(interval));
  Client client(stage.desktop.display());
  stage.user.pointAt(client.window());
  waitForShortcut(stage, tabKey);
  stage.user.tap(tabKey);
  const double first = arrivalAfter(client, settling);
  const MemoryFigures before = memoryOf(vorrin->process().id());
  long received = 0;
  double last = first;
  while (received < clicks) {
    last = arrivalAfter(client, atATime);
    received += atATime;
    if (received % progressEvery == 0) {
      std::fprintf(stderr, "vorrin_benchmark: %ld of %ld clicks, resident memory %.2f MiB\n",
                   received, clicks, memoryOf(vorrin->process().id()).resident);
    }
  }
  const MemoryFigures after = memoryOf(vorrin->process().id());
  // A tick that comes too late is left out, and the grid stays where it was.
  const double ticks = (last - first) / interval;
  const double drift = (ticks - std::round(ticks)) * interval * 1000;
  printTable(
      "A long run of clicks every millisecond",
      {{"what", "value"},
       {"clicks received", std::to_string(received)},
       {"ticks of that time", fixed(std::round(ticks), 0)},
       {"ticks that brought no click", fixed(std::round(ticks) - static_cast<double>(received), 0)},
       {"last click off the grid of the first, ms", fixed(drift, 3)},
       {"resident memory at the start, MiB", fixed(before.resident, 2)},
       {"and at the end", fixed(after.resident, 2)},
       {"memory of its own at the start, MiB", fixed(before.own, 2)},
       {"and at the end", fixed(after.own, 2)}});
}

}  // namespace vorrin::bench
