#include "bench/statistics.h"

#include <algorithm>
#include <cmath>

namespace vorrin::bench {

double percentile(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  const auto last = static_cast<double>(values.size() - 1);
  const auto index = static_cast<std::ptrdiff_t>(std::lround(last * part));
  std::nth_element(values.begin(), values.begin() + index, values.end());
  return values[static_cast<std::size_t>(index)];
}

}  // namespace vorrin::bench
