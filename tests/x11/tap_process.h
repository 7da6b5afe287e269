#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "tests/x11/harness/process.h"

namespace vorrin::x11_tests {

/// What the callback of the tap saw.
struct SeenKey {
  bool down = false;
  std::int64_t keyCode = 0;
  bool repeat = false;
};

/// The program that holds an event tap and does as it is told.
class TapProcess {
 public:
  explicit TapProcess(const std::string& display);
  /// With the way to listen that the environment says, started by another command if there is one.
  explicit TapProcess(const Environment& environment, std::vector<std::string> command = {});

  /// Gives a command and reads on to its answer.
  bool command(const std::string& line);

  /// Gives a command without waiting for its answer.
  void start(const std::string& line) { process_.writeLine(line); }

  /// Reads on to the line `answer`; false when it does not come.
  bool readUpTo(const std::string& answer);

  /// Reads on to a press of the key; false when none is seen in time.
  bool waitForPress(std::int64_t keyCode);

  /// Reads on to a repeat of the key. What was seen is kept for `readSeen`.
  bool waitForRepeat(std::int64_t keyCode);

  /// All keys that the callback saw since the last call, up to now. What it made of them is done.
  std::vector<SeenKey> readSeen();

  /// What the callback saw since the last call, as far as its output was read.
  std::vector<SeenKey> takeSeen();

  Process& process() { return process_; }

 private:
  bool waitForEvent(const std::function<bool(const SeenKey&)>& wanted);
  std::optional<std::string> takeLine();

  Process process_;
  std::vector<SeenKey> seen_;
};

/// "50+ 50+r 50-": code, down or up, repeat.
std::string describe(const std::vector<SeenKey>& keys);

}  // namespace vorrin::x11_tests
