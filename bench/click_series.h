#pragma once

#include <functional>
#include <vector>

#include "bench/session.h"

namespace vorrin::bench {

/// Clicks as a client in front received them.
struct ClickSeries {
  std::vector<double> intervals;  ///< seconds between two presses
  double processorSeconds = 0;    ///< that the clicking process spent on them
  [[nodiscard]] double perSecond() const;
  void append(const ClickSeries& other);
};

/// Has `client` collect the clicks that arrive during `seconds`, from a moment after the first one
/// on. `clicker`
/// is the process whose processor time counts.
ClickSeries collectClicks(x11_tests::Client& client, const x11_tests::Process& clicker,
                          double seconds);

}  // namespace vorrin::bench
