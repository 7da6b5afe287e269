#include <array>
#include <chrono>
#include <functional>
#include <stdexcept>

#include "bench/sections.h"
#include "bench/session.h"
#include "bench/statistics.h"
#include "bench/table.h"
#include "settings/preset_store.h"

namespace vorrin::bench {

namespace {

constexpr int rounds = 5;

void require(bool done) {
  if (!done) throw std::runtime_error("the store refused what it should do");
}

double milliseconds(const std::function<void()>& operation) {
  const auto begin = std::chrono::steady_clock::now();
  operation();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
      .count();
}

/// Medians of list, save, rename and delete in milliseconds with `count` presets stored.
std::array<double, 4> measure(const PresetStore& store, int count) {
  std::array<std::vector<double>, 4> times;
  for (int round = 0; round < rounds; ++round) {
    times[0].push_back(milliseconds(
        [&] { require(store.all().value.size() == static_cast<std::size_t>(count)); }));
    times[1].push_back(milliseconds([&] { require(store.save(clickingEvery(0.5), "New")); }));
    times[2].push_back(milliseconds([&] { require(store.rename("New", "Newer")); }));
    times[3].push_back(milliseconds([&] { require(store.remove("Newer")); }));
  }
  return {median(times[0]), median(times[1]), median(times[2]), median(times[3])};
}

}  // namespace

void measureStore() {
  const SharedHome home;
  const UserDefaults defaults = UserDefaults::standard();
  const PresetStore store(defaults);
  std::vector<Row> rows{
      {"presets", "list ms", "save ms", "rename ms", "delete ms", "save, of 10 times fewer"}};
  double smaller = 0;
  for (const int count : {10, 100, 1000, 10000}) {
    storePresets(count);
    const auto times = measure(store, count);
    rows.push_back({std::to_string(count), fixed(times[0], 2), fixed(times[1], 2),
                    fixed(times[2], 2), fixed(times[3], 2),
                    smaller > 0 ? fixed(times[1] / smaller, 1) : ""});
    smaller = times[1];
  }
  printTable("The preset store (medians of 5)", rows);
}

}  // namespace vorrin::bench
