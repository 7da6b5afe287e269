#pragma once

#include <string>
#include <vector>

namespace vorrin::bench {

using Row = std::vector<std::string>;

/// Prints a table that reads as text and as Markdown; the first row is the heading.
void printTable(const std::string& title, const std::vector<Row>& rows);

/// `value` with `decimals` places.
std::string fixed(double value, int decimals);

}  // namespace vorrin::bench
