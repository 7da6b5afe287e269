#include "input_helper/log.h"

#include <poll.h>
#include <unistd.h>

#include <string>

namespace vorrin::input_helper {

void log(std::string_view line) {
  const std::string text = "vorrin-input-helper: " + std::string(line) + "\n";
  // Short enough for a terminal or a pipe that has any room to take it whole.
  pollfd output{STDERR_FILENO, POLLOUT, 0};
  if (::poll(&output, 1, 0) != 1 || output.revents != POLLOUT) return;
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace vorrin::input_helper
