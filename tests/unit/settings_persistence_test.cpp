#include "settings/settings_persistence.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/presets.h"
#include "support/storage_test.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::startPreset;

class SettingsPersistenceTest : public test::StorageTest {
 protected:
  [[nodiscard]] Preset loaded() const { return loadCurrentSettings(defaults).value; }
};

std::int64_t integer(std::int64_t value) {
  return value;
}

TEST_F(SettingsPersistenceTest, stored_settings_are_loaded_and_start_values_where_there_are_none) {
  EXPECT_EQ(loaded(), startPreset());
  EXPECT_FALSE(storeCurrentSettings(defaults, otherPreset()));
  EXPECT_EQ(loaded(), otherPreset());
  EXPECT_EQ(loadCurrentSettings(reopened()).value, otherPreset());
}

TEST_F(SettingsPersistenceTest, loading_writes_nothing) {
  put("digit", integer(42));
  static_cast<void>(loaded());
  EXPECT_EQ(defaults.object("digit").value, DefaultsObject{integer(42)});
  EXPECT_FALSE(defaults.object("interval0").value);
}

TEST_F(SettingsPersistenceTest, entries_missing_are_replaced_one_by_one) {
  put("interval1", 0.5);
  put("key0", integer(101));
  put("enabled1", false);
  EXPECT_EQ(loaded(), (Preset{{0.05, 0.5}, {101, 48}, 1, {true, false}}));
}

TEST_F(SettingsPersistenceTest, numbers_and_flags_within_the_bounds_serve_as_intervals) {
  put("interval0", 3600.0);
  put("interval1", 0.001);
  EXPECT_EQ(loaded().intervals, (std::vector<double>{3600, 0.001}));
  put("interval0", integer(7));
  put("interval1", true);
  EXPECT_EQ(loaded().intervals, (std::vector<double>{7, 1}));
}

TEST_F(SettingsPersistenceTest, keys_that_are_equal_or_made_so_by_a_repair_are_both_replaced) {
  for (const auto& [first, second] : {std::pair{97, 97}, {48, 53}, {53, 50}}) {
    put("key0", integer(first));
    put("key1", integer(second));
    EXPECT_EQ(loaded().keys, (std::vector<std::uint16_t>{50, 48})) << first << ", " << second;
  }
}

TEST_F(SettingsPersistenceTest, a_digit_is_brought_into_range) {
  using Limits = std::numeric_limits<std::int64_t>;
  const std::map<std::int64_t, std::int64_t> digitOfStored{
      {0, 0}, {9, 9}, {10, 9}, {42, 9}, {-1, 0}, {-3, 0}, {Limits::max(), 9}, {Limits::min(), 0}};
  for (const auto& [stored, expected] : digitOfStored) {
    put("digit", stored);
    EXPECT_EQ(loaded().digit, expected) << stored;
  }
}

TEST_F(SettingsPersistenceTest, whole_reals_serve_as_integers_and_zero_and_one_as_flags) {
  put("key0", 97.0);
  put("digit", 7.0);
  put("enabled0", integer(0));
  put("enabled1", 1.0);
  EXPECT_EQ(loaded(), (Preset{{0.05, 0.001}, {97, 48}, 7, {false, true}}));
}

TEST_F(SettingsPersistenceTest, an_entry_of_another_type_or_out_of_range_is_replaced) {
  using Reals = std::numeric_limits<double>;
  const std::map<std::string, std::vector<DefaultsObject>> wrong{
      {"interval",
       {std::string("0.2"), Data{"0.2"}, 5000.0, 3600.0000001, 0.0009, 0.0, -1.0, false, 1e300,
        1e-300, Reals::infinity(), -Reals::infinity()}},
      {"key",
       {integer(53), integer(0), integer(-1), integer(65535), integer(97 + 65536),
        integer(97 - 65536), std::numeric_limits<std::int64_t>::max(), std::string("97"),
        Data{"97"}, 97.5, true}},
      {"enabled", {std::string("false"), Data{"0"}, integer(2), 0.5, integer(-1)}},
      {"digit",
       {std::string("7"), Data{"7"}, 7.5, 1e30, 9223372036854775808.0, Reals::infinity()}}};
  for (const auto& [entry, values] : wrong) {
    for (const DefaultsObject& value : values) {
      for (const char* macro : {"0", "1"}) put(entry + (entry == "digit" ? "" : macro), value);
      EXPECT_EQ(loaded(), startPreset()) << entry << " " << &value - values.data();
    }
  }
}

}  // namespace
}  // namespace vorrin
