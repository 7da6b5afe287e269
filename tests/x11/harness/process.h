#pragma once

#include <sys/types.h>

#include <chrono>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::x11_tests {

/// Variables added to the environment, or changed in it.
using Environment = std::map<std::string, std::string>;

/// How a process came to its end.
struct Ending {
  bool bySignal = false;
  int number = 0;  ///< of the signal, or the exit status
  bool operator==(const Ending&) const = default;
};

/// A program running beside the test. It is killed when this goes away, and by the kernel when the
/// test itself ends. Its standard error is the test's.
class Process {
 public:
  /// Throws std::runtime_error when the program cannot be started.
  explicit Process(const std::vector<std::string>& command, const Environment& environment = {});
  ~Process();
  Process(const Process&) = delete;
  Process& operator=(const Process&) = delete;

  /// The next line of its standard output without the line feed; nothing when none comes in time or
  /// the output has ended.
  std::optional<std::string> readLine(std::chrono::milliseconds bound = patience);

  /// Writes a line to its standard input.
  void writeLine(const std::string& line);

  void signal(int number) const;

  /// Its end; nothing when it still runs after `bound`.
  std::optional<Ending> waitForEnd(std::chrono::milliseconds bound = patience);

  [[nodiscard]] pid_t id() const { return id_; }

 private:
  void takeLines(const std::string& text);

  pid_t id_ = -1;
  FileDescriptor input_;
  FileDescriptor output_;
  std::string unfinished_;
  std::deque<std::string> lines_;
  std::optional<Ending> ending_;
};

}  // namespace vorrin::x11_tests
