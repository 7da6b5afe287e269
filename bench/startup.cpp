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
constexpr const char* plainTitle = "plain";

/// Milliseconds from the start of a program to the moment the window manager lists its window.
double timeToWindow(Windows& windows, const std::string& title,
                    const std::function<void()>& start) {
  const auto begin = std::chrono::steady_clock::now();
  start();
  if (!x11_tests::waitUntil([&] { return windows.titled(title).has_value(); })) {
    throw std::runtime_error("no window appeared");
  }
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

double plainWindow(const Stage& stage, Windows& windows) {
  std::unique_ptr<x11_tests::Process> plain;
  return timeToWindow(windows, plainTitle, [&] {
    plain = std::make_unique<x11_tests::Process>(
        std::vector<std::string>{VORRIN_TEST_CLIENT, plainTitle},
        x11_tests::Environment{{"DISPLAY", stage.desktop.display()}});
  });
}

double vorrinWindow(const Stage& stage, Windows& windows) {
  std::unique_ptr<x11_tests::Program> vorrin;
  return timeToWindow(windows, "Vorrin", [&] { vorrin = startVorrin(stage); });
}

void waitUntilClosed(Windows& windows) {
  x11_tests::waitUntil([&] { return windows.all().empty(); });
}

}  // namespace

void measureStartup() {
  const Stage stage;
  Windows windows(stage.desktop.display());
  std::vector<double> plain;
  std::vector<double> vorrin;
  for (int round = 0; round < rounds; ++round) {
    plain.push_back(plainWindow(stage, windows));
    waitUntilClosed(windows);
    vorrin.push_back(vorrinWindow(stage, windows));
    waitUntilClosed(windows);
  }
  storePresets(1000);
  std::vector<double> vorrinWithPresets;
  for (int round = 0; round < rounds; ++round) {
    vorrinWithPresets.push_back(vorrinWindow(stage, windows));
    waitUntilClosed(windows);
  }
  printTable("From the start of the program to its window, in ms (10 rounds)",
             {{"who", "p50", "worst", "of the plain window's"},
              {"a plain X11 window (reference)", fixed(median(plain), 1),
               fixed(percentile(plain, 1), 1), "1.00"},
              {"Vorrin", fixed(median(vorrin), 1), fixed(percentile(vorrin, 1), 1),
               fixed(median(vorrin) / median(plain), 2)},
              {"Vorrin with 1,000 presets", fixed(median(vorrinWithPresets), 1),
               fixed(percentile(vorrinWithPresets, 1), 1),
               fixed(median(vorrinWithPresets) / median(plain), 2)}});
}

}  // namespace vorrin::bench
