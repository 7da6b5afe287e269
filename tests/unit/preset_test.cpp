#include "settings/preset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "settings/choices.h"
#include "support/presets.h"

namespace vorrin {
namespace {

using test::startPreset;

Preset withIntervals(const std::vector<double>& intervals) {
  return {intervals, {50, 48}, 1, {true, true}};
}

Preset withKeys(const std::vector<std::uint16_t>& keys) {
  return {{0.05, 0.001}, keys, 1, {true, true}};
}

Preset withDigit(std::int64_t digit) {
  return {{0.05, 0.001}, {50, 48}, digit, {true, true}};
}

Preset withEnabled(const std::vector<bool>& enabled) {
  return {{0.05, 0.001}, {50, 48}, 1, enabled};
}

TEST(Preset, the_start_values_are_valid_and_an_empty_record_is_not) {
  EXPECT_TRUE(startPreset().valid());
  EXPECT_FALSE(Preset{}.valid());
}

TEST(Preset, two_intervals_within_the_bounds_are_valid) {
  EXPECT_TRUE(withIntervals({0.001, 3600}).valid());
  EXPECT_TRUE(withIntervals({3600, 0.001}).valid());
  using Limits = std::numeric_limits<double>;
  for (const double wrong : {0.0, -1.0, std::nextafter(0.001, 0), std::nextafter(3600, 1e9), 5000.0,
                             1e300, 1e-300, Limits::quiet_NaN(), Limits::infinity()}) {
    EXPECT_FALSE(withIntervals({wrong, 1}).valid()) << wrong;
    EXPECT_FALSE(withIntervals({1, wrong}).valid()) << wrong;
  }
}

TEST(Preset, every_pair_of_different_choices_is_valid) {
  for (const auto& first : choices) {
    for (const auto& second : choices) {
      EXPECT_EQ(withKeys({first.keyCode, second.keyCode}).valid(), first.keyCode != second.keyCode)
          << first.name << ", " << second.name;
    }
  }
}

TEST(Preset, a_key_that_is_no_choice_is_not_valid) {
  for (const std::uint16_t key : {std::uint16_t{53}, std::uint16_t{0}, std::uint16_t{65535}}) {
    EXPECT_FALSE(withKeys({50, key}).valid()) << key;
    EXPECT_FALSE(withKeys({key, 50}).valid()) << key;
  }
}

TEST(Preset, digits_from_0_to_9_are_valid) {
  for (int digit = 0; digit <= 9; ++digit) EXPECT_TRUE(withDigit(digit).valid()) << digit;
  using Limits = std::numeric_limits<std::int64_t>;
  for (const std::int64_t digit :
       {std::int64_t{-1}, std::int64_t{10}, Limits::min(), Limits::max()}) {
    EXPECT_FALSE(withDigit(digit).valid()) << digit;
  }
}

TEST(Preset, a_number_of_values_other_than_two_is_not_valid) {
  for (const std::vector<double>& list : {std::vector<double>{}, {1}, {1, 1, 1}}) {
    EXPECT_FALSE(withIntervals(list).valid());
  }
  for (const std::vector<std::uint16_t>& list :
       {std::vector<std::uint16_t>{}, {50}, {50, 48, 97}}) {
    EXPECT_FALSE(withKeys(list).valid());
  }
  for (const std::vector<bool>& list : {std::vector<bool>{}, {true}, {true, true, true}}) {
    EXPECT_FALSE(withEnabled(list).valid());
  }
}

TEST(Choices, are_the_six_keys_in_the_order_of_the_menus) {
  std::vector<std::pair<std::string_view, std::uint16_t>> listed;
  for (const auto& choice : choices) listed.emplace_back(choice.name, choice.keyCode);
  EXPECT_EQ(
      listed,
      (decltype(listed){
          {"Backtick `", 50}, {"Tab", 48}, {"F6", 97}, {"F7", 98}, {"F8", 100}, {"F9", 101}}));
}

TEST(Choices, a_number_is_not_cut_to_16_bits_before_it_is_looked_up) {
  EXPECT_TRUE(isChoice(50));
  EXPECT_FALSE(isChoice(50 + 65536));
  EXPECT_FALSE(isChoice(50 - 65536));
}

}  // namespace
}  // namespace vorrin
