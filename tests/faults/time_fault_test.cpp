#include <sys/mman.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "fault_test.h"

namespace vorrin::faults {
namespace {

// The clock is set, and the machine has other things to do.
struct TimeFault : FaultTest {
  static constexpr std::int64_t day = 86'400;
  static constexpr std::int64_t years = 3 * 366 * day;

  const std::filesystem::path shiftFile = home.path() / "clock";

  TimeFault() {
    setClock(0);
    programEnvironment = {
        {"LD_PRELOAD", VORRIN_WALL_CLOCK_LIBRARY},
        {"VORRIN_WALL_CLOCK", shiftFile.string()},
        // Otherwise the sanitizer refuses everything loaded before it.
        {"ASAN_OPTIONS", "exitcode=99:verify_asan_link_order=0"},
    };
  }

  /// Sets the wall clock of the programs to be started and of those that run.
  void setClock(std::int64_t seconds) const {
    std::fstream file(shiftFile, std::ios::binary | std::ios::in | std::ios::out);
    if (!file.is_open()) file.open(shiftFile, std::ios::binary | std::ios::out);
    file.write(reinterpret_cast<const char*>(&seconds), sizeof seconds);
  }

  /// The year in which programs now think they are.
  [[nodiscard]] int yearSeen() const {
    Process date({"date", "+%Y"}, programEnvironment);
    return std::stoi(date.readLine().value_or("0"));
  }

  /// Both macros go on, at no more than their hundred actions a second.
  void expectUsualPace() {
    client->readAll(user);
    expectActions(keyboardMacro);
    expectActions(mouseMacro);
    EXPECT_LT(pressesPerSecond(std::chrono::seconds(1)), 300);
  }
};

TEST_F(TimeFault, setting_the_clock_back_or_forward_changes_no_pace_and_no_shortcut) {
  startMacros();
  const int year = yearSeen();
  for (const std::int64_t seconds : {-years, years, std::int64_t{-3600}}) {
    setClock(seconds);
    expectUsualPace();
    EXPECT_EQ(yearSeen() != year, std::abs(seconds) > day) << "the clock was not set";
    user.tap(keys::escape);
    expectSilence();
    runMacros();
  }
  user.tap(keys::escape);
  expectSilence();
  expectUsableInput();
}

struct LoadFault : FaultTest {
  std::vector<std::unique_ptr<Process>> load;

  void startLoad() {
    for (int count = 0; count < 6; ++count) {
      load.push_back(
          std::make_unique<Process>(std::vector<std::string>{"sh", "-c", "while :; do :; done"}));
    }
  }
};

TEST_F(LoadFault, on_a_busy_machine_no_key_is_lost_and_escape_stops_the_macros) {
  start();
  startLoad();
  user.tap(keys::tab);
  expectActions(mouseMacro);
  const std::string text = "the quick brown fox jumps over a lazy dog 0123456789";
  client->readAll(user);
  user.type(text);
  std::vector<ClientEvent> events = client->readAll(user);
  EXPECT_EQ(textOf(events), text);
  user.tap(keys::escape);
  expectSilence();
  load.clear();
  expectUsableInput();
}

TEST_F(LoadFault, on_a_busy_machine_every_press_of_a_macro_has_its_release) {
  settings.intervals = {0.001, 0.001};
  start();
  startLoad();
  runMacros();
  waitFor(std::chrono::seconds(1));
  user.tap(keys::escape);
  expectSilence();
  load.clear();
  expectUsableInput();
}

}  // namespace
}  // namespace vorrin::faults
