#include "bench/typing_table.h"

#include "bench/statistics.h"

namespace vorrin::bench {

Row typingHeading() {
  return {"keys/s", "who", "p50 ms", "p99 ms", "added p50", "added p99", "lost", "out of place"};
}

Row typingRow(double perSecond, const std::string& who, const Typed& typed,
              const Typed& reference) {
  const auto added = [&](double part) {
    return fixed(percentile(typed.latencies, part) - percentile(reference.latencies, part), 3);
  };
  return {fixed(perSecond, 0),
          who,
          fixed(percentile(typed.latencies, 0.5), 3),
          fixed(percentile(typed.latencies, 0.99), 3),
          added(0.5),
          added(0.99),
          std::to_string(typed.lost),
          std::to_string(typed.wrong)};
}

}  // namespace vorrin::bench
