#include <array>
#include <chrono>
#include <functional>
#include <memory>
#include <stdexcept>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/statistics.h"
#include "bench/table.h"
#include "tests/x11/harness/windows.h"

namespace vorrin::bench {

namespace {

using x11_tests::Windows;

constexpr int rounds = 10;

/// A program to be started, and the title of its window.
struct Starter {
  std::string title;
  std::function<std::shared_ptr<void>()> start;
  std::vector<double> milliseconds{};
};

/// Adds the time from the start of a program to the moment the window manager lists its window.
void measureStart(Windows& windows, Starter& starter) {
  const auto begin = std::chrono::steady_clock::now();
  auto program = starter.start();
  if (!x11_tests::waitUntil([&] { return windows.titled(starter.title).has_value(); })) {
    throw std::runtime_error("no window appeared");
  }
  const auto end = std::chrono::steady_clock::now();
  starter.milliseconds.push_back(std::chrono::duration<double, std::milli>(end - begin).count());
  program.reset();
  x11_tests::waitUntil([&] { return windows.all().empty(); });
}

Starter processWith(const Stage& stage, const std::string& title,
                    const std::vector<std::string>& command) {
  return {title, [&stage, command] {
            return std::make_shared<x11_tests::Process>(
                command, x11_tests::Environment{{"DISPLAY", stage.desktop.display()}});
          }};
}

Row row(const std::string& who, const Starter& starter, const Starter& reference) {
  const auto& times = starter.milliseconds;
  return {who, fixed(median(times), 1), fixed(percentile(times, 1), 1),
          fixed(median(times) / median(reference.milliseconds), 2)};
}

}  // namespace

void measureStartup() {
  const Stage stage;
  Windows windows(stage.desktop.display());
  auto plain = processWith(stage, "plain", {VORRIN_TEST_CLIENT, "plain"});
  auto toolkit = processWith(stage, "toolkit", {VORRIN_TOOLKIT_WINDOW});
  auto text = processWith(stage, "toolkit", {VORRIN_TOOLKIT_WINDOW, "Vorrin"});
  Starter vorrin{"Vorrin", [&] { return std::shared_ptr<void>(startVorrin(stage)); }};
  Starter withPresets = vorrin;
  for (int round = 0; round < rounds; ++round) {
    for (auto* const starter : std::array{&plain, &toolkit, &text, &vorrin})
      measureStart(windows, *starter);
  }
  storePresets(1000);
  for (int round = 0; round < rounds; ++round) measureStart(windows, withPresets);
  printTable("From the start of the program to its window, in ms (10 rounds)",
             {{"who", "p50", "worst", "of the toolkit window's"},
              row("a plain X11 window", plain, toolkit),
              row("an empty window of the toolkit (reference)", toolkit, toolkit),
              row("one with a line of text", text, toolkit),
              row("Vorrin", vorrin, toolkit),
              row("Vorrin with 1,000 presets", withPresets, toolkit)});
}

}  // namespace vorrin::bench
