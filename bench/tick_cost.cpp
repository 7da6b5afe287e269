#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/table.h"

namespace vorrin::bench {

namespace {

using x11_tests::Process;

// What a tick cost when this was last looked at (GCC 12, Release). A later ratio above 1.05 wants a
// reason.
constexpr double recordedInstructions = 4724;

x11_tests::Environment environmentOf(const Stage& stage) {
  // With the event loop that the program chooses.
  return {{"DISPLAY", stage.desktop.display()}, {"VORRIN_INPUT", "x11"}, {"QT_NO_GLIB", "1"}};
}

/// The instructions of a whole run, by callgrind.
double instructionsOf(const Stage& stage, const std::vector<std::string>& program) {
  const std::string log = (stage.home.path() / "callgrind.log").string();
  std::vector<std::string> command{"valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null",
                                   "--log-file=" + log};
  command.insert(command.end(), program.begin(), program.end());
  Process process(command, environmentOf(stage));
  if (!process.waitForEnd(std::chrono::minutes(2))) throw std::runtime_error("callgrind hangs");
  std::ifstream file(log);
  for (std::string line; std::getline(file, line);) {
    const std::size_t found = line.find("Collected : ");
    if (found != std::string::npos) return std::stod(line.substr(found + 12));
  }
  throw std::runtime_error("callgrind counted nothing");
}

/// What a tick takes once everything is set up: the difference of two runs, so that start and end
/// drop out.
double instructionsPerTick(const Stage& stage, const std::string& program,
                           const std::vector<std::string>& arguments) {
  const auto run = [&](int ticks) {
    std::vector<std::string> command{program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.push_back(std::to_string(ticks));
    return instructionsOf(stage, command);
  };
  constexpr int ticks = 1000;
  return (run(2 * ticks) - run(ticks)) / ticks;
}

/// System calls of a tick, by strace, counted in the same way.
double systemCallsPerTick(const Stage& stage, const std::string& program,
                          const std::vector<std::string>& arguments) {
  const auto run = [&](int ticks) {
    const std::string log = (stage.home.path() / "strace.log").string();
    std::vector<std::string> command{"strace", "-f", "--quiet=all", "-o", log, program};
    command.insert(command.end(), arguments.begin(), arguments.end());
    command.push_back(std::to_string(ticks));
    Process process(command, environmentOf(stage));
    if (!process.waitForEnd(std::chrono::minutes(2))) throw std::runtime_error("strace hangs");
    std::ifstream file(log);
    return static_cast<double>(
        std::count(std::istreambuf_iterator(file), std::istreambuf_iterator<char>(), '\n'));
  };
  constexpr int ticks = 1000;
  return (run(2 * ticks) - run(ticks)) / ticks;
}

std::string allocations(const Stage& stage) {
  Process ticker({VORRIN_TICKER, "10000"}, environmentOf(stage));
  return ticker.readLine(std::chrono::minutes(1)).value_or("no answer");
}

}  // namespace

void measureTickCost() {
  const Stage stage;
  const std::vector<std::string> everyMillisecond{"1000000"};
  const double limit = instructionsPerTick(stage, VORRIN_BARE_CLICKER, everyMillisecond);
  const double vorrin = instructionsPerTick(stage, VORRIN_TICKER, {});
  const double limitCalls = systemCallsPerTick(stage, VORRIN_BARE_CLICKER, everyMillisecond);
  const double calls = systemCallsPerTick(stage, VORRIN_TICKER, {});
  printTable("A tick of the click macro, from its timer to the X request",
             {{"who", "instructions", "of the bare loop's", "of what was recorded", "system calls",
               "allocations in 5,000"},
              {"bare loop (reference)", fixed(limit, 0), "1.00", "", fixed(limitCalls, 1), ""},
              {"Vorrin", fixed(vorrin, 0), fixed(vorrin / limit, 2),
               fixed(vorrin / recordedInstructions, 3), fixed(calls, 1), allocations(stage)}});
}

}  // namespace vorrin::bench
