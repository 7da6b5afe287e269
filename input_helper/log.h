#pragma once

#include <string_view>

namespace vorrin::input_helper {

/// One line on standard error, under this program's name. Never tells which key was pressed. A line
/// that cannot be written at once is dropped.
void log(std::string_view line);

}  // namespace vorrin::input_helper
