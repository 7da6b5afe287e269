#include <algorithm>
#include <cmath>
#include <csignal>
#include <deque>
#include <string>
#include <utility>
#include <vector>

#include "bench/click_series.h"
#include "bench/sections.h"
#include "bench/statistics.h"
#include "bench/table.h"

namespace vorrin::bench {

namespace {

using x11_tests::Client;
using x11_tests::Process;

constexpr int turns = 3;

ClickSeries clicksOfProgram(Stage& stage, const std::vector<std::string>& command, double seconds) {
  Client client(stage.desktop.display());
  stage.user.pointAt(client.window());
  Process clicker(command, {{"DISPLAY", stage.desktop.display()}});
  ClickSeries series = collectClicks(client, clicker, seconds);
  clicker.signal(SIGKILL);
  clicker.waitForEnd();
  return series;
}

ClickSeries clicksOfVorrin(Stage& stage, double interval, double seconds) {
  const auto vorrin = startConnectedVorrin(stage, clickingEvery(interval));
  Client client(stage.desktop.display());
  stage.user.pointAt(client.window());
  waitForShortcut(stage, tabKey);
  stage.user.tap(tabKey);
  ClickSeries series = collectClicks(client, vorrin->process(), seconds);
  stage.user.tap(escapeKey);
  client.readAll(stage.user);
  return series;
}

/// How far the intervals are from the one wished for, in seconds: what the share `part` of them
/// does not exceed.
double error(const ClickSeries& series, double interval, double part) {
  std::vector<double> errors;
  errors.reserve(series.intervals.size());
  for (const double actual : series.intervals) errors.push_back(std::abs(actual - interval));
  return percentile(std::move(errors), part);
}

/// Ticks of the series' time that brought no click.
double missed(const ClickSeries& series, double interval) {
  const auto received = static_cast<double>(series.intervals.size());
  return std::max(0.0, std::round(received / series.perSecond() / interval) - received);
}

Row row(double interval, int busyLoops, const std::string& name, const ClickSeries& series,
        const ClickSeries& limit) {
  const auto milliseconds = [&series](double part) {
    return fixed(percentile(series.intervals, part) * 1000, 3);
  };
  const auto processor = [](const ClickSeries& of) {
    return of.processorSeconds * 1e6 / static_cast<double>(of.intervals.size());
  };
  return {fixed(interval, 3),
          std::to_string(busyLoops),
          name,
          fixed(series.perSecond(), 1),
          fixed(series.perSecond() / limit.perSecond(), 4),
          milliseconds(0.5),
          milliseconds(0.99),
          milliseconds(0.999),
          milliseconds(1),
          fixed(missed(series, interval), 0),
          fixed(error(series, interval, 0.99) / error(limit, interval, 0.99), 2),
          fixed(processor(series), 1),
          fixed(processor(series) / processor(limit), 2)};
}

}  // namespace

void measureClicks() {
  Stage stage;
  std::vector<Row> rows{{"every s", "busy loops", "who", "clicks/s", "of limit", "p50 ms", "p99 ms",
                         "p99.9 ms", "worst ms", "missed", "p99 error of limit's", "CPU ms/1000",
                         "of limit"}};
  struct Setting {
    double interval;
    int busyLoops;
  };
  for (const auto& [interval, busyLoops] :
       {Setting{0.001, 0}, {0.001, 2}, {0.002, 0}, {0.01, 0}, {0.05, 0}}) {
    std::deque<Process> load;
    for (int loop = 0; loop < busyLoops; ++loop) {
      load.emplace_back(std::vector<std::string>{"sh", "-c", "while :; do :; done"});
    }
    const double seconds = interval < 0.01 ? 2 : 4;
    const auto nanoseconds = std::to_string(std::lround(interval * 1e9));
    const auto milliseconds = std::to_string(std::lround(interval * 1e3));
    ClickSeries limit;
    ClickSeries vorrin;
    ClickSeries xdotool;
    // In turns, so that what else the machine does for a while meets all of them.
    for (int turn = 0; turn < turns; ++turn) {
      limit.append(clicksOfProgram(stage, {VORRIN_BARE_CLICKER, nanoseconds}, seconds));
      vorrin.append(clicksOfVorrin(stage, interval, seconds));
      xdotool.append(clicksOfProgram(
          stage, {"xdotool", "click", "--repeat", "1000000", "--delay", milliseconds, "1"},
          seconds));
    }
    rows.push_back(row(interval, busyLoops, "bare loop (the limit)", limit, limit));
    rows.push_back(row(interval, busyLoops, "Vorrin", vorrin, limit));
    rows.push_back(row(interval, busyLoops, "xdotool", xdotool, limit));
  }
  printTable("Clicks received by a program in front", rows);
}

}  // namespace vorrin::bench
