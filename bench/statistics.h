#pragma once

#include <vector>

namespace vorrin::bench {

/// The value that the share `part` (0 to 1) of `values` does not exceed; 0 for no values.
double percentile(std::vector<double> values, double part);

inline double median(const std::vector<double>& values) {
  return percentile(values, 0.5);
}

}  // namespace vorrin::bench
