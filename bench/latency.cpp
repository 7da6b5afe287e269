#include <chrono>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/statistics.h"
#include "bench/table.h"

namespace vorrin::bench {

namespace {

using x11_tests::Client;
using x11_tests::ClientEvent;

constexpr int rounds = 100;
constexpr std::uint16_t letterKey = 0;
constexpr unsigned markButton = 2;
constexpr double interval = 0.001;

std::int64_t now() {
  return std::chrono::duration_cast<std::chrono::nanoseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

double milliseconds(std::int64_t from, std::int64_t to) {
  return static_cast<double>(to - from) / 1e6;
}

struct Latencies {
  std::vector<double> plainKey;
  std::vector<double> start;
  std::vector<double> stop;
  std::vector<double> behindTab;       ///< nobody listens
  std::vector<double> behindShortcut;  ///< Vorrin does
};

bool isKeyPress(const ClientEvent& event) {
  return event.kind == "KeyPress";
}
bool isClick(const ClientEvent& event) {
  return event.kind == "ButtonPress" && event.detail == 1;
}
bool isMark(const ClientEvent& event) {
  return event.kind == "ButtonRelease" && event.detail == markButton;
}

void measureRound(Client& client, x11_tests::User& user, Latencies& latencies) {
  const std::int64_t letterPressed = now();
  user.tap(letterKey);
  latencies.plainKey.push_back(
      milliseconds(letterPressed, client.readUntil(isKeyPress).back().arrival));
  const std::int64_t tabPressed = now();
  user.tap(tabKey);
  const std::int64_t firstClick = client.readUntil(isClick).back().arrival;
  latencies.start.push_back(milliseconds(tabPressed, firstClick) - interval * 1000);
  const std::int64_t escapePressed = now();
  user.tap(escapeKey);
  // The end is marked by a button, since keys may overtake clicks at the window manager. Nor would
  // another keyboard's key do: the server would announce its map, and the window manager would read
  // its tables of compositions anew, letting no click pass for some 30 ms.
  user.click(markButton);
  std::int64_t lastClick = escapePressed;
  for (const ClientEvent& event : client.readUntil(isMark)) {
    if (isClick(event)) lastClick = event.arrival;
  }
  latencies.stop.push_back(std::max(0.0, milliseconds(escapePressed, lastClick)));
}

bool isLetter(const ClientEvent& event) {
  return isKeyPress(event) && event.detail == x11_tests::keycodeOf(letterKey);
}

/// How long a letter takes that is typed right behind Tab.
double timeBehindTab(Client& client, x11_tests::User& user) {
  user.queue(tabKey, true, x11_tests::Source::keyboard);
  user.queue(letterKey, true, x11_tests::Source::keyboard);
  const std::int64_t pressed = now();
  user.flush();
  const double time = milliseconds(pressed, client.readUntil(isLetter).back().arrival);
  user.release(letterKey);
  user.release(tabKey);
  client.readAll(user);
  return time;
}

/// A shortcut takes its keyboard from the program in front until it was judged.
void measureVerdicts(Latencies& latencies) {
  constexpr double never = 3600;
  Stage stage;
  {
    Client client(stage.desktop.display());
    for (int round = 0; round < rounds; ++round) {
      latencies.behindTab.push_back(timeBehindTab(client, stage.user));
    }
  }
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(never));
  Client client(stage.desktop.display());
  waitForShortcut(stage, tabKey);
  for (int round = 0; round < rounds; ++round) {
    latencies.behindShortcut.push_back(timeBehindTab(client, stage.user));
  }
}

Row row(const std::string& name, const std::vector<double>& values,
        const std::vector<double>& reference) {
  return {name, fixed(median(values), 2), fixed(percentile(values, 0.99), 2),
          fixed(median(values) / median(reference), 2)};
}

}  // namespace

void measureLatency() {
  Stage stage;
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(interval));
  Client client(stage.desktop.display());
  stage.user.pointAt(client.window());
  waitForShortcut(stage, tabKey);
  Latencies latencies;
  for (int round = 0; round < rounds; ++round) measureRound(client, stage.user, latencies);
  measureVerdicts(latencies);
  printTable(
      "From a key press, in ms (100 rounds)",
      {{"what", "p50", "p99", "of a plain key's"},
       row("a plain key's arrival (reference)", latencies.plainKey, latencies.plainKey),
       row("shortcut to the start (first click less one interval)", latencies.start,
           latencies.plainKey),
       row("Escape to the last click received", latencies.stop, latencies.plainKey),
       row("a letter right behind Tab, nobody listens", latencies.behindTab, latencies.plainKey),
       row("a letter right behind Tab, a shortcut of Vorrin's", latencies.behindShortcut,
           latencies.plainKey)});
}

}  // namespace vorrin::bench
