// Holds an event tap and does with it what its standard input says, a command a line. Tells on its
// standard output what the tap's callback sees and how the commands went.
#include <unistd.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>
#include <algorithm>
#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <optional>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "platform/accessibility.h"
#include "platform/event_post.h"
#include "platform/event_tap.h"

namespace {

using vorrin::EventTap;
using vorrin::EventType;
using vorrin::SyntheticEvent;
using vorrin::TapEvent;
using vorrin::TapVerdict;

constexpr std::uint64_t keyEvents = (1U << 10) | (1U << 11);

struct State {
  std::optional<EventTap> tap;
  std::vector<std::int64_t> swallowed;
};

State& state() {
  static State state;
  return state;
}

TapVerdict judge(const TapEvent& event) {
  std::printf("event %s %" PRId64 " %" PRId64 "\n",
              event.type == EventType::keyDown ? "down" : "up", event.keyCode, event.autorepeat);
  std::fflush(stdout);
  const bool isChosen =
      std::ranges::find(state().swallowed, event.keyCode) != state().swallowed.end();
  return isChosen && event.userData == 0 ? TapVerdict::swallow : TapVerdict::pass;
}

template <typename Number>
std::vector<Number> readNumbers(std::istream& fields) {
  std::vector<Number> numbers;
  for (Number number{}; fields >> number;) numbers.push_back(number);
  return numbers;
}

void answer(const std::string& command, bool yes) {
  std::printf("%s %s\n", command.c_str(), yes ? "yes" : "no");
  std::fflush(stdout);
}

bool createTap(const std::vector<std::uint16_t>& keys) {
  state().tap = EventTap::create(keyEvents, judge, [] {
    state().tap.reset();
    std::puts("invalidated");
    std::fflush(stdout);
  });
  if (!state().tap) return false;
  state().tap->addToMainRunLoop();
  state().tap->setEnabled(true);
  if (state().tap->claim(keys)) return true;
  state().tap.reset();
  return false;
}

SyntheticEvent event(EventType type, std::uint16_t keyCode = 0, std::int64_t userData = 0) {
  return {.type = type, .location = {}, .keyCode = keyCode, .userData = userData};
}

void post(std::uint16_t keyCode, std::int64_t userData, int count) {
  const std::array events{event(EventType::keyDown, keyCode, userData),
                          event(EventType::keyUp, keyCode, userData)};
  for (int index = 0; index < count; ++index) vorrin::postEvents(events);
}

void click(int count) {
  const std::array events{event(EventType::leftMouseDown), event(EventType::leftMouseUp)};
  for (int index = 0; index < count; ++index) vorrin::postEvents(events);
}

void clickEveryMillisecond() {
  static QTimer timer;
  timer.setTimerType(Qt::PreciseTimer);
  QObject::connect(&timer, &QTimer::timeout, &timer, [] { click(1); });
  timer.start(1);
}

/// Answers when all that the server told up to now has been served.
void answerBehindEvents(const std::string& command) {
  // The answer of the server takes along what it told before, which is served before the main loop
  // sleeps, and before this, which is connected later.
  constexpr std::array<std::uint16_t, 1> unusedKey{0x1D};
  if (state().tap) static_cast<void>(state().tap->canClaim(unusedKey));
  auto* const loop = QAbstractEventDispatcher::instance();
  QObject::connect(
      loop, &QAbstractEventDispatcher::aboutToBlock, loop, [=] { answer(command, true); },
      Qt::SingleShotConnection);
}

void pressOnly(std::uint16_t keyCode) {
  vorrin::postEvents(
      std::array{event(EventType::keyDown, keyCode), event(EventType::leftMouseDown)});
}

void obey(const std::string& line) {
  std::istringstream fields(line);
  std::string command;
  fields >> command;
  if (command == "create") return answer(command, createTap(readNumbers<std::uint16_t>(fields)));
  if (command == "fence") return answerBehindEvents(command);
  if (command == "trusted") return answer(command, vorrin::isProcessTrusted());
  if (command == "ask") return answer(command, vorrin::isProcessTrustedWithPrompt());
  if (command == "pointer") return answer(command, vorrin::pointerLocation().has_value());
  if (command == "choose") {
    return answer(command, state().tap->claim(readNumbers<std::uint16_t>(fields)));
  }
  if (command == "swallow") state().swallowed = readNumbers<std::int64_t>(fields);
  if (command == "enable" && state().tap) state().tap->setEnabled(true);
  if (command == "disable" && state().tap) state().tap->setEnabled(false);
  if (command == "drop") state().tap.reset();
  if (command == "block") {
    const std::vector<int> milliseconds = readNumbers<int>(fields);
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds.at(0)));
  }
  if (command == "post") {
    const std::vector<int> numbers = readNumbers<int>(fields);
    post(static_cast<std::uint16_t>(numbers.at(0)), numbers.at(1), numbers.at(2));
  }
  if (command == "click") click(readNumbers<int>(fields).at(0));
  if (command == "press-only") pressOnly(readNumbers<std::uint16_t>(fields).at(0));
  if (command == "click-on") clickEveryMillisecond();
  if (command == "quit") QCoreApplication::quit();
  answer(command, true);
}

}  // namespace

int main(int count, char** arguments) {
  const QCoreApplication application(count, arguments);
  QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, &input, [&] {
    // As much as a pipe holds, so what is read ends with a line: each is written in one go.
    std::array<char, 65536> buffer{};
    const ssize_t length = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (length <= 0) return QCoreApplication::quit();
    std::istringstream lines(std::string(buffer.data(), static_cast<std::size_t>(length)));
    for (std::string line; std::getline(lines, line);) obey(line);
  });
  return QCoreApplication::exec();
}
