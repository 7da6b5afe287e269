#include "settings/preset.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "settings/choices.h"
#include "settings/preset_store.h"
#include "support/presets.h"

namespace vorrin {
namespace {

using test::startPreset;

TEST(Preset, the_start_values_are_valid_and_an_empty_record_is_not) {
  EXPECT_TRUE(startPreset().valid());
  EXPECT_FALSE(Preset{}.valid());
}

TEST(Preset, two_intervals_within_the_bounds_are_valid) {
  Preset preset = startPreset();
  preset.intervals = {0.001, 3600};
  EXPECT_TRUE(preset.valid());
  using Limits = std::numeric_limits<double>;
  for (const double wrong : {0.0, -1.0, std::nextafter(0.001, 0), std::nextafter(3600, 1e9), 5000.0,
                             1e300, 1e-300, Limits::quiet_NaN(), Limits::infinity()}) {
    for (const auto& intervals : std::vector<std::vector<double>>{{wrong, 1}, {1, wrong}}) {
      preset.intervals = intervals;
      EXPECT_FALSE(preset.valid()) << wrong;
    }
  }
}

TEST(Preset, every_pair_of_different_choices_is_valid_and_no_other_key) {
  Preset preset = startPreset();
  for (const auto& first : choices) {
    for (const auto& second : choices) {
      preset.keys = {first.keyCode, second.keyCode};
      EXPECT_EQ(preset.valid(), first.keyCode != second.keyCode) << first.name << second.name;
    }
    for (const int other : {53, 0, 65535}) {
      preset.keys = {first.keyCode, static_cast<std::uint16_t>(other)};
      EXPECT_FALSE(preset.valid()) << other;
    }
  }
}

TEST(Preset, digits_from_0_to_9_are_valid) {
  Preset preset = startPreset();
  for (preset.digit = 0; preset.digit <= 9; ++preset.digit) EXPECT_TRUE(preset.valid());
  using Limits = std::numeric_limits<std::int64_t>;
  for (const std::int64_t digit :
       {std::int64_t{-1}, std::int64_t{10}, Limits::min(), Limits::max()}) {
    preset.digit = digit;
    EXPECT_FALSE(preset.valid()) << digit;
  }
}

TEST(Preset, a_number_of_values_other_than_two_is_not_valid) {
  for (const std::size_t count : {0U, 1U, 3U}) {
    Preset intervals = startPreset();
    Preset keys = intervals;
    Preset enabled = intervals;
    intervals.intervals.resize(count, 1);
    keys.keys.resize(count, 97);
    enabled.enabled.resize(count, true);
    EXPECT_FALSE(intervals.valid() || keys.valid() || enabled.valid()) << count;
  }
}

TEST(Choices, are_the_six_keys_in_the_order_of_the_menus) {
  std::vector<std::pair<std::string_view, std::uint16_t>> listed;
  for (const auto& choice : choices) listed.emplace_back(choice.name, choice.keyCode);
  EXPECT_EQ(
      listed,
      (decltype(listed){
          {"Backtick `", 50}, {"Tab", 48}, {"F6", 97}, {"F7", 98}, {"F8", 100}, {"F9", 101}}));
  EXPECT_TRUE(isChoice(50));
  EXPECT_FALSE(isChoice(50 + 65536));
}

std::string times(int count, const std::string& text) {
  std::string result;
  for (; count > 0; --count) result += text;
  return result;
}

TEST(PresetName, is_the_text_without_the_white_space_around_it) {
  EXPECT_EQ(presetName("\t\r\n\u3000Night shift 2\n\u200B"), "Night shift 2");
  for (const char* blank : {"", " ", "\t\r\n", "\u00A0\u2028", "\u0085\u200B"}) {
    EXPECT_FALSE(presetName(blank)) << testing::PrintToString(blank);
  }
}

TEST(PresetName, has_at_most_80_characters_without_the_white_space_around_it) {
  EXPECT_EQ(presetName(times(50, " ") + times(80, "a") + times(50, "\n")), times(80, "a"));
  EXPECT_FALSE(presetName(" " + times(81, "a") + " "));
  EXPECT_TRUE(presetName("a" + times(78, " ") + "b"));
  EXPECT_FALSE(presetName("a" + times(79, " ") + "b"));
}

TEST(PresetName, characters_are_counted_as_a_user_counts_them) {
  const std::vector<std::string> characters{
      "é", "e\u0301", "ก\u0E33", "नि", "👩‍👩‍👧‍👦", "🇩🇪"};
  for (const std::string& character : characters) {
    EXPECT_TRUE(presetName(times(80, character))) << character;
    EXPECT_FALSE(presetName(times(81, character))) << character;
  }
  EXPECT_TRUE(presetName("x" + times(78, "\r\n") + "x"));
  EXPECT_FALSE(presetName("x" + times(79, "\r\n") + "x"));
}

}  // namespace
}  // namespace vorrin
