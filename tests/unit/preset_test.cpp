#include "settings/preset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "settings/choices.h"
#include "support/presets.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::startPreset;

Preset withIntervals(std::vector<double> intervals) {
  Preset preset = startPreset();
  preset.intervals = std::move(intervals);
  return preset;
}

Preset withKeys(std::vector<std::uint16_t> keys) {
  Preset preset = startPreset();
  preset.keys = std::move(keys);
  return preset;
}

Preset withDigit(std::int64_t digit) {
  Preset preset = startPreset();
  preset.digit = digit;
  return preset;
}

Preset withEnabled(std::vector<bool> enabled) {
  Preset preset = startPreset();
  preset.enabled = std::move(enabled);
  return preset;
}

TEST(Preset, the_start_values_are_valid) {
  EXPECT_TRUE(startPreset().valid());
}

TEST(Preset, an_empty_record_is_not_valid) {
  EXPECT_FALSE(Preset{}.valid());
}

TEST(Preset, intervals_at_the_bounds_are_valid) {
  EXPECT_TRUE(withIntervals({0.001, 3600}).valid());
  EXPECT_TRUE(withIntervals({3600, 0.001}).valid());
}

TEST(Preset, an_interval_out_of_range_is_not_valid) {
  for (const double interval :
       {0.0, -1.0, std::nextafter(0.001, 0), std::nextafter(3600, 1e9), 5000.0, 1e300, 1e-300}) {
    EXPECT_FALSE(withIntervals({interval, 1}).valid()) << interval;
    EXPECT_FALSE(withIntervals({1, interval}).valid()) << interval;
  }
}

TEST(Preset, an_interval_that_is_not_finite_is_not_valid) {
  using Limits = std::numeric_limits<double>;
  EXPECT_FALSE(withIntervals({Limits::quiet_NaN(), 1}).valid());
  EXPECT_FALSE(withIntervals({1, Limits::infinity()}).valid());
}

TEST(Preset, a_number_of_intervals_other_than_two_is_not_valid) {
  EXPECT_FALSE(withIntervals({}).valid());
  EXPECT_FALSE(withIntervals({1}).valid());
  EXPECT_FALSE(withIntervals({1, 1, 1}).valid());
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

TEST(Preset, a_number_of_keys_other_than_two_is_not_valid) {
  EXPECT_FALSE(withKeys({}).valid());
  EXPECT_FALSE(withKeys({50}).valid());
  EXPECT_FALSE(withKeys({50, 48, 97}).valid());
}

TEST(Preset, digits_from_0_to_9_are_valid) {
  for (int digit = 0; digit <= 9; ++digit) EXPECT_TRUE(withDigit(digit).valid()) << digit;
}

TEST(Preset, a_digit_out_of_range_is_not_valid) {
  using Limits = std::numeric_limits<std::int64_t>;
  for (const std::int64_t digit :
       {std::int64_t{-1}, std::int64_t{10}, Limits::min(), Limits::max()}) {
    EXPECT_FALSE(withDigit(digit).valid()) << digit;
  }
}

TEST(Preset, any_two_enabled_flags_are_valid) {
  EXPECT_TRUE(withEnabled({false, false}).valid());
  EXPECT_TRUE(withEnabled({true, false}).valid());
}

TEST(Preset, a_number_of_flags_other_than_two_is_not_valid) {
  EXPECT_FALSE(withEnabled({}).valid());
  EXPECT_FALSE(withEnabled({true}).valid());
  EXPECT_FALSE(withEnabled({true, true, true}).valid());
}

TEST(Preset, records_are_equal_when_all_fields_are) {
  EXPECT_EQ(startPreset(), startPreset());
  EXPECT_NE(startPreset(), withIntervals({0.001, 0.05}));
  EXPECT_NE(startPreset(), withIntervals({0.05}));
  EXPECT_NE(startPreset(), withKeys({48, 50}));
  EXPECT_NE(startPreset(), withDigit(2));
  EXPECT_NE(startPreset(), withEnabled({true, false}));
  EXPECT_NE(startPreset(), otherPreset());
}

TEST(Preset, intervals_are_compared_as_numbers) {
  EXPECT_EQ(withIntervals({0.0, 1}), withIntervals({-0.0, 1}));
  const double nan = std::numeric_limits<double>::quiet_NaN();
  EXPECT_NE(withIntervals({nan, 1}), withIntervals({nan, 1}));
}

TEST(Preset, random_valid_records_are_valid) {
  test::Random random;
  for (int count = 0; count < 1000; ++count) EXPECT_TRUE(test::randomValidPreset(random).valid());
}

TEST(Choices, are_the_six_keys_in_the_order_of_the_menus) {
  const std::vector<std::pair<std::string_view, std::uint16_t>> expected{
      {"Backtick `", 50}, {"Tab", 48}, {"F6", 97}, {"F7", 98}, {"F8", 100}, {"F9", 101}};
  ASSERT_EQ(choices.size(), expected.size());
  for (std::size_t index = 0; index < expected.size(); ++index) {
    EXPECT_EQ(choices[index].name, expected[index].first);
    EXPECT_EQ(choices[index].keyCode, expected[index].second);
  }
}

TEST(Choices, a_number_is_not_cut_to_16_bits_before_it_is_looked_up) {
  EXPECT_TRUE(isChoice(50));
  EXPECT_FALSE(isChoice(50 + 65536));
  EXPECT_FALSE(isChoice(50 - 65536));
}

}  // namespace
}  // namespace vorrin
