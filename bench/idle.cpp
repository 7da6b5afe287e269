#include <chrono>
#include <filesystem>
#include <string>
#include <thread>

#include "bench/process_figures.h"
#include "bench/sections.h"
#include "bench/session.h"
#include "bench/table.h"

namespace vorrin::bench {

void measureIdle() {
  constexpr std::chrono::seconds period{20};
  Stage stage;
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(0.001));
  const x11_tests::Client client(stage.desktop.display());
  // The time is what is measured here, not waited for: nothing must happen meanwhile.
  std::this_thread::sleep_for(std::chrono::seconds(2));
  const ProcessFigures before = figuresOf(vorrin->process().id());
  std::this_thread::sleep_for(period);
  const ProcessFigures after = figuresOf(vorrin->process().id());
  const auto seconds = static_cast<double>(period.count());
  const MemoryFigures memory = memoryOf(vorrin->process().id());
  printTable(
      "Vorrin idle, another program in front",
      {{"what", "value", "aim"},
       {"wake-ups per second",
        fixed(static_cast<double>(after.wakeUps - before.wakeUps) / seconds, 2), "at most 2"},
       {"CPU seconds per hour",
        fixed((after.processorSeconds - before.processorSeconds) / seconds * 3600, 2), ""},
       {"resident memory, MiB", fixed(memory.resident, 1), "at most 45"},
       {"proportional memory, MiB", fixed(memory.proportional, 1), ""},
       {"memory of its own, MiB", fixed(memory.own, 1), ""},
       {"size of the program, KiB",
        fixed(static_cast<double>(std::filesystem::file_size(
                  "/proc/" + std::to_string(vorrin->process().id()) + "/exe")) /
                  1024,
              0),
        ""}});
}

}  // namespace vorrin::bench
