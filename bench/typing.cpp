#include <string>
#include <vector>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/typing_table.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::bench {

namespace {

using x11_tests::Client;
using x11_tests::ClientEvent;

constexpr std::string_view letters = "the quick brown fox jumps over the lazy dog ";

/// Types letters at a steady rate, and a shortcut among them now and then, held over the next key.
Typed typeAt(double perSecond, x11_tests::User& user, Client& client, bool withShortcuts) {
  std::vector<std::int64_t> pressed;
  std::string text;
  const auto gap = static_cast<std::int64_t>(1e9 / perSecond);
  std::int64_t next = x11_tests::monotonicNanoseconds();
  for (int key = 0; key < typedKeys; ++key) {
    x11_tests::waitFor(std::chrono::nanoseconds(next - x11_tests::monotonicNanoseconds()));
    next += gap;
    const bool isAfterShortcut = withShortcuts && key % shortcutEvery == 0;
    if (isAfterShortcut) {
      user.press(tabKey);
      // As close as hands at this rate would.
      x11_tests::waitFor(std::chrono::nanoseconds(gap / 2));
    }
    const std::string_view letter =
        letters.substr(static_cast<std::size_t>(key) % letters.size(), 1);
    pressed.push_back(x11_tests::monotonicNanoseconds());
    user.type(letter);
    text += letter;
    if (isAfterShortcut) user.release(tabKey);
  }
  const std::vector<ClientEvent> events = client.readAll(user);
  const std::string received = x11_tests::textOf(events);
  Typed typed;
  typed.lost = text.size() > received.size() ? text.size() - received.size() : 0;
  for (std::size_t place = 0; place < text.size(); ++place) {
    if (place >= received.size() || received[place] != text[place]) ++typed.wrong;
  }
  std::size_t place = 0;
  for (const ClientEvent& event : events) {
    if (event.kind != "KeyPress" || place == pressed.size()) continue;
    typed.latencies.push_back(static_cast<double>(event.arrival - pressed[place++]) / 1e6);
  }
  return typed;
}

}  // namespace

void measureTyping() {
  constexpr double never = 3600;
  std::vector<Row> rows{typingHeading()};
  for (const double perSecond : typingRates) {
    Stage stage;
    Typed plain;
    {
      Client client(stage.desktop.display());
      plain = typeAt(perSecond, stage.user, client, false);
    }
    const auto vorrin = startConnectedVorrin(stage, clickingEvery(never));
    Client client(stage.desktop.display());
    waitForShortcut(stage, tabKey);
    const Typed filtered = typeAt(perSecond, stage.user, client, true);
    rows.push_back(typingRow(perSecond, "nobody listens (reference)", plain, plain));
    rows.push_back(typingRow(perSecond, "Vorrin, a shortcut held every 11th key", filtered, plain));
  }
  printTable("Typing into a program in front, from the press to its arrival (440 keys)", rows);
}

}  // namespace vorrin::bench
