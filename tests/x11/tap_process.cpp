#include "tap_process.h"

#include <sstream>
#include <utility>

namespace vorrin::x11_tests {

namespace {

std::optional<SeenKey> parseEvent(const std::string& line) {
  std::istringstream fields(line);
  std::string word;
  std::string direction;
  int repeat = 0;
  SeenKey key;
  fields >> word >> direction >> key.keyCode >> repeat;
  if (word != "event") return std::nullopt;
  key.down = direction == "down";
  key.repeat = repeat != 0;
  return key;
}

}  // namespace

TapProcess::TapProcess(const std::string& display)
    : TapProcess(Environment{{"DISPLAY", display}, {"VORRIN_INPUT", "x11"}}) {}

TapProcess::TapProcess(const Environment& environment, std::vector<std::string> command)
    : process_((command.emplace_back(VORRIN_TAP_PROGRAM), command), environment) {}

bool TapProcess::command(const std::string& line) {
  process_.writeLine(line);
  const std::string name = line.substr(0, line.find(' '));
  auto answer = takeLine();
  while (answer && answer != name + " yes" && answer != name + " no") answer = takeLine();
  return answer == name + " yes";
}

bool TapProcess::readUpTo(const std::string& answer) {
  auto line = takeLine();
  while (line && line != answer) line = takeLine();
  return line.has_value();
}

bool TapProcess::waitForPress(std::int64_t keyCode) {
  return waitForEvent([=](const SeenKey& key) { return key.down && key.keyCode == keyCode; });
}

bool TapProcess::waitForRepeat(std::int64_t keyCode) {
  return waitForEvent([=](const SeenKey& key) { return key.repeat && key.keyCode == keyCode; });
}

bool TapProcess::waitForEvent(const std::function<bool(const SeenKey&)>& wanted) {
  while (const auto line = takeLine()) {
    const std::optional<SeenKey> key = parseEvent(*line);
    if (key && wanted(*key)) return true;
  }
  return false;
}

std::vector<SeenKey> TapProcess::readSeen() {
  command("fence");
  command("fence");
  return takeSeen();
}

std::vector<SeenKey> TapProcess::takeSeen() {
  return std::exchange(seen_, {});
}

std::optional<std::string> TapProcess::takeLine() {
  std::optional<std::string> line = process_.readLine();
  if (const auto key = parseEvent(line.value_or(""))) seen_.push_back(*key);
  return line;
}

std::string describe(const std::vector<SeenKey>& keys) {
  std::string text;
  for (const SeenKey& key : keys) {
    if (!text.empty()) text += ' ';
    text += std::to_string(key.keyCode) + (key.down ? "+" : "-") + (key.repeat ? "r" : "");
  }
  return text;
}

}  // namespace vorrin::x11_tests
