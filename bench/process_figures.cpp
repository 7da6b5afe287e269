#include "bench/process_figures.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>

namespace vorrin::bench {

namespace fs = std::filesystem;

namespace {

fs::path folderOf(pid_t process) {
  return fs::path("/proc") / std::to_string(process);
}

/// "Name:   number ..." lines by name.
std::map<std::string, double> numbersIn(const fs::path& path) {
  std::map<std::string, double> numbers;
  std::ifstream file(path);
  for (std::string line; std::getline(file, line);) {
    std::istringstream fields(line);
    std::string name;
    double number = 0;
    if (fields >> name >> number) numbers[name] = number;
  }
  return numbers;
}

}  // namespace

ProcessFigures figuresOf(pid_t process) {
  ProcessFigures figures;
  for (const auto& thread : fs::directory_iterator(folderOf(process) / "task")) {
    double nanoseconds = 0;
    std::ifstream(thread.path() / "schedstat") >> nanoseconds;
    figures.processorSeconds += nanoseconds / 1e9;
    figures.wakeUps +=
        static_cast<long>(numbersIn(thread.path() / "status")["voluntary_ctxt_switches:"]);
  }
  return figures;
}

MemoryFigures memoryOf(pid_t process) {
  auto numbers = numbersIn(folderOf(process) / "smaps_rollup");
  return {.resident = numbers["Rss:"] / 1024,
          .proportional = numbers["Pss:"] / 1024,
          .own = (numbers["Private_Clean:"] + numbers["Private_Dirty:"]) / 1024};
}

}  // namespace vorrin::bench
