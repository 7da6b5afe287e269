#include "bench/table.h"

#include <algorithm>
#include <cstdio>

namespace vorrin::bench {

namespace {

void printRow(const Row& row, const std::vector<std::size_t>& widths) {
  for (std::size_t column = 0; column < widths.size(); ++column) {
    const std::string& cell = row.at(column);
    std::printf("| %s%s ", cell.c_str(), std::string(widths[column] - cell.size(), ' ').c_str());
  }
  std::puts("|");
}

}  // namespace

void printTable(const std::string& title, const std::vector<Row>& rows) {
  std::vector<std::size_t> widths(rows.front().size(), 0);
  for (const Row& row : rows) {
    for (std::size_t column = 0; column < widths.size(); ++column) {
      widths[column] = std::max(widths[column], row.at(column).size());
    }
  }
  std::printf("\n%s\n\n", title.c_str());
  printRow(rows.front(), widths);
  for (const std::size_t width : widths) std::printf("|%s", std::string(width + 2, '-').c_str());
  std::puts("|");
  for (std::size_t row = 1; row < rows.size(); ++row) printRow(rows[row], widths);
  std::fflush(stdout);
}

std::string fixed(double value, int decimals) {
  char text[64];
  std::snprintf(text, sizeof text, "%.*f", decimals, value);
  return text;
}

}  // namespace vorrin::bench
