#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>
#include <vector>

namespace vorrin::test {

/// A random generator that says how to have the same numbers again: its seed is printed, and taken
/// from VORRIN_TEST_SEED when that is set.
class Random {
 public:
  Random() : seed_(chosenSeed()), engine_(seed_) {
    std::cout << "random numbers of VORRIN_TEST_SEED=" << seed_ << '\n';
  }

  /// From `low` to `high`, both included.
  template <class Integer>
  Integer between(Integer low, Integer high) {
    return std::uniform_int_distribution<Integer>(low, high)(engine_);
  }

  double real(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }

  bool chance(double probability) { return std::bernoulli_distribution(probability)(engine_); }

  template <class T>
  const T& of(const std::vector<T>& values) {
    return values[between<std::size_t>(0, values.size() - 1)];
  }

 private:
  static std::uint64_t chosenSeed() {
    const char* wanted = std::getenv("VORRIN_TEST_SEED");
    return wanted != nullptr ? std::stoull(wanted) : std::random_device{}();
  }

  std::uint64_t seed_;
  std::mt19937_64 engine_;
};

}  // namespace vorrin::test
