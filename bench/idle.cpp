#include <chrono>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "bench/process_figures.h"
#include "bench/sections.h"
#include "bench/session.h"
#include "bench/table.h"
#include "tests/x11/harness/windows.h"

namespace vorrin::bench {

namespace {

constexpr std::chrono::seconds settling{2};

/// The memory of a window of the toolkit.
MemoryFigures memoryOfToolkit(const Stage& stage, const std::vector<std::string>& command) {
  const x11_tests::Process toolkit(command, {{"DISPLAY", stage.desktop.display()}});
  x11_tests::Windows windows(stage.desktop.display());
  if (!x11_tests::waitUntil([&] { return windows.titled("toolkit").has_value(); })) {
    throw std::runtime_error("no window appeared");
  }
  std::this_thread::sleep_for(settling);
  return memoryOf(toolkit.id());
}

}  // namespace

void measureIdle() {
  constexpr std::chrono::seconds period{20};
  Stage stage;
  const MemoryFigures toolkit = memoryOfToolkit(stage, {VORRIN_TOOLKIT_WINDOW});
  const MemoryFigures text = memoryOfToolkit(stage, {VORRIN_TOOLKIT_WINDOW, "Vorrin"});
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(0.001));
  const x11_tests::Client client(stage.desktop.display());
  // The time is what is measured here, not waited for: nothing must happen meanwhile.
  std::this_thread::sleep_for(settling);
  const pid_t process = vorrin->process().id();
  const ProcessFigures before = figuresOf(process);
  std::this_thread::sleep_for(period);
  const ProcessFigures after = figuresOf(process);
  const auto seconds = static_cast<double>(period.count());
  const auto wakeUps = static_cast<double>(after.wakeUps - before.wakeUps) / seconds;
  const double processor = (after.processorSeconds - before.processorSeconds) / seconds * 3600;
  const MemoryFigures memory = memoryOf(process);
  const auto size = std::filesystem::file_size("/proc/" + std::to_string(process) + "/exe");
  printTable(
      "Vorrin idle, another program in front",
      {{"what", "an empty window of the toolkit", "one with a line of text", "Vorrin", "aim"},
       {"wake-ups per second", "", "", fixed(wakeUps, 2), "at most 2"},
       {"CPU seconds per hour", "", "", fixed(processor, 2), ""},
       {"resident memory, MiB", fixed(toolkit.resident, 1), fixed(text.resident, 1),
        fixed(memory.resident, 1), "at most 45"},
       {"proportional memory, MiB", fixed(toolkit.proportional, 1), fixed(text.proportional, 1),
        fixed(memory.proportional, 1), ""},
       {"memory of its own, MiB", fixed(toolkit.own, 1), fixed(text.own, 1), fixed(memory.own, 1),
        ""},
       {"size of the program, KiB", "", "", fixed(static_cast<double>(size) / 1024, 0), ""}});
}

}  // namespace vorrin::bench
