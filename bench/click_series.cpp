#include "bench/click_series.h"

#include <numeric>

#include "bench/process_figures.h"

namespace vorrin::bench {

using x11_tests::ClientEvent;

namespace {

/// Nanoseconds after the first click. The shortcut comes from another keyboard than the last key,
/// so the window manager binds its own keys anew first and lets the clicks of some 20 ms pass at
/// once.
constexpr std::int64_t settling = 300'000'000;

}  // namespace

double ClickSeries::perSecond() const {
  const double whole = std::accumulate(intervals.begin(), intervals.end(), 0.0);
  return whole > 0 ? static_cast<double>(intervals.size()) / whole : 0;
}

void ClickSeries::append(const ClickSeries& other) {
  intervals.insert(intervals.end(), other.intervals.begin(), other.intervals.end());
  processorSeconds += other.processorSeconds;
}

ClickSeries collectClicks(x11_tests::Client& client, const x11_tests::Process& clicker,
                          double seconds) {
  std::int64_t begin = 0;
  client.readUntil([&begin](const ClientEvent& event) {
    if (event.kind != "ButtonPress") return false;
    if (begin == 0) begin = event.arrival;
    return event.arrival - begin >= settling;
  });
  const double before = figuresOf(clicker.id()).processorSeconds;
  std::int64_t first = 0;
  std::int64_t previous = 0;
  ClickSeries series;
  client.readUntil(
      [&](const ClientEvent& event) {
        if (event.kind != "ButtonPress") return false;
        if (first == 0) {
          first = event.arrival;
        } else {
          series.intervals.push_back(static_cast<double>(event.arrival - previous) / 1e9);
        }
        previous = event.arrival;
        return static_cast<double>(previous - first) / 1e9 >= seconds;
      },
      std::chrono::seconds(static_cast<long>(seconds) + 30));
  series.processorSeconds = figuresOf(clicker.id()).processorSeconds - before;
  return series;
}

}  // namespace vorrin::bench
