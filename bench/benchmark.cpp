// Measures Vorrin against named references in one run and prints the tables.
// usage: vorrin_benchmark [SECTION...]     (clicks, latency, idle, list, startup, store, tick,
// typing; all without one)
//        vorrin_benchmark soak [CLICKS]     (ten million)
#include <algorithm>
#include <cstdio>
#include <exception>
#include <fstream>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "bench/sections.h"

namespace {

using vorrin::bench::measureSoak;
using Section = std::pair<std::string, void (*)()>;

const std::vector<Section> sections{
    {"clicks", vorrin::bench::measureClicks},   {"latency", vorrin::bench::measureLatency},
    {"idle", vorrin::bench::measureIdle},       {"list", vorrin::bench::measurePresetList},
    {"startup", vorrin::bench::measureStartup}, {"store", vorrin::bench::measureStore},
    {"tick", vorrin::bench::measureTickCost},   {"typing", vorrin::bench::measureTyping}};

std::string processorName() {
  std::ifstream file("/proc/cpuinfo");
  for (std::string line; std::getline(file, line);) {
    if (line.rfind("model name", 0) == 0) return line.substr(line.find(':') + 2);
  }
  return "unknown processor";
}

void runSections(const std::vector<std::string>& wanted) {
  for (const auto& [name, measure] : sections) {
    const bool chosen =
        wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end();
    if (chosen) measure();
  }
}

}  // namespace

int main(int argumentCount, char** arguments) {
  std::printf("Machine: %s, %u processors\n", processorName().c_str(),
              std::thread::hardware_concurrency());
  const std::vector<std::string> words(arguments + 1, arguments + argumentCount);
  try {
    if (!words.empty() && words.front() == "soak") {
      measureSoak(words.size() > 1 ? std::stol(words[1]) : 10'000'000);
    } else {
      runSections(words);
    }
  } catch (const std::exception& error) {
    std::fprintf(stderr, "vorrin: the measurement ended early: %s\n", error.what());
    return 1;
  }
  return 0;
}
