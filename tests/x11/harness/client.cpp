#include "tests/x11/harness/client.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>

namespace vorrin::x11_tests {

namespace {

ClientEvent parse(const std::string& line) {
  std::istringstream fields(line);
  ClientEvent event;
  fields >> event.kind >> event.detail >> event.state >> event.arrival;
  return event;
}

bool isKey(const ClientEvent& event) {
  return event.kind == "KeyPress" || event.kind == "KeyRelease";
}

bool isMark(const ClientEvent& event) {
  return isKey(event) && event.detail == keycodeOf(clientMark);
}

}  // namespace

Client::Client(const std::string& display, const std::string& title)
    : process_({VORRIN_TEST_CLIENT, title}, {{"DISPLAY", display}}) {
  const std::optional<std::string> line = process_.readLine();
  if (!line || line->rfind("window ", 0) != 0) throw std::runtime_error("the client has no window");
  window_ = std::stoul(line->substr(7));
  readUntil(nth(1, "FocusIn"));
}

std::vector<ClientEvent> Client::readUntil(const std::function<bool(const ClientEvent&)>& wanted,
                                           std::chrono::milliseconds bound) {
  const auto end = std::chrono::steady_clock::now() + bound;
  std::vector<ClientEvent> events;
  while (true) {
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(end - std::chrono::steady_clock::now());
    const std::optional<std::string> line = process_.readLine(left);
    if (!line)
      throw std::runtime_error("the client did not receive what was expected; received: " +
                               keysOf(events));
    events.push_back(parse(*line));
    if (wanted(events.back())) return events;
  }
}

std::vector<ClientEvent> Client::readAll(User& user) {
  user.tap(clientMark, Source::xtest);
  std::vector<ClientEvent> events = readUntil(releaseOf(clientMark));
  std::erase_if(events, isMark);
  return events;
}

std::function<bool(const ClientEvent&)> releaseOf(std::uint16_t virtualKey) {
  return [keycode = keycodeOf(virtualKey)](const ClientEvent& event) {
    return event.kind == "KeyRelease" && event.detail == keycode;
  };
}

std::function<bool(const ClientEvent&)> nth(int count, const std::string& kind) {
  return [count, kind](const ClientEvent& event) mutable {
    return event.kind == kind && --count == 0;
  };
}

std::string keysOf(const std::vector<ClientEvent>& events) {
  std::string text;
  for (const ClientEvent& event : events) {
    if (!isKey(event) || isMark(event)) continue;
    if (!text.empty()) text += ' ';
    text += (event.kind == "KeyPress" ? '+' : '-') + std::to_string(event.detail);
  }
  return text;
}

std::string textOf(const std::vector<ClientEvent>& events) {
  std::string text;
  for (const ClientEvent& event : events) {
    if (event.kind != "KeyPress") continue;
    if (const std::optional<char> character = characterOf(event.detail)) text += *character;
  }
  return text;
}

std::size_t countOf(const std::vector<ClientEvent>& events, const std::string& kind) {
  return static_cast<std::size_t>(
      std::ranges::count(events, kind, [](const ClientEvent& event) { return event.kind; }));
}

}  // namespace vorrin::x11_tests
