#include "input_helper/log.h"

#include <unistd.h>

#include <string>

namespace vorrin::input_helper {

void log(std::string_view line) {
  const std::string text = "vorrin-input-helper: " + std::string(line) + "\n";
  // Nobody reading it is no reason to fail.
  [[maybe_unused]] const auto written = ::write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace vorrin::input_helper
