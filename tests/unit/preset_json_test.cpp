#include "settings/preset_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>

#include "support/preset_text.h"
#include "support/presets.h"
#include "support/required.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::presetText;
using test::required;
using test::startJson;
using test::startPreset;
using namespace std::string_literals;

TEST(PresetJson, a_record_has_exactly_the_four_members) {
  EXPECT_EQ(required(encodePreset(startPreset())),
            R"({"digit":1,"enabled":[true,true],"intervals":[0.05,0.001],"keys":[50,48]})");
}

TEST(PresetJson, a_record_is_read_in_any_order_of_members) {
  EXPECT_EQ(decodePreset(startJson), startPreset());
  EXPECT_EQ(decodePreset(R"( { "enabled" : [ true , true ], "digit" : 1,
                             "keys" : [ 50 , 48 ], "intervals":[5e-2, 0.001] } )"),
            startPreset());
}

TEST(PresetJson, members_of_other_names_are_passed_over) {
  EXPECT_EQ(decodePreset(R"({"new":{"keys":[1]},"intervals":[0.05,0.001],"keys":[50,48],
                             "digit":1,"Digit":"x","enabled":[true,true]})"),
            startPreset());
}

TEST(PresetJson, an_encoded_record_reads_back_equal) {
  EXPECT_EQ(decodePreset(required(encodePreset(otherPreset()))), otherPreset());
}

TEST(PresetJson, lists_of_any_length_and_values_of_any_range_read_back_equal) {
  const Preset odd{
      {1e300, -5e-324, 0}, {0, 65535, 53}, std::numeric_limits<std::int64_t>::min(), {}};
  EXPECT_EQ(decodePreset(required(encodePreset(odd))), odd);
  EXPECT_EQ(decodePreset(required(encodePreset(Preset{}))), Preset{});
}

TEST(PresetJson, an_interval_that_is_not_finite_cannot_be_written) {
  using Limits = std::numeric_limits<double>;
  for (const double interval : {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}) {
    Preset preset = startPreset();
    preset.intervals[1] = interval;
    EXPECT_FALSE(encodePreset(preset));
    EXPECT_FALSE(encodePresets({{"fine", startPreset()}, {"not finite", preset}}));
  }
}

TEST(PresetJson, a_record_without_one_of_the_members_is_refused) {
  EXPECT_FALSE(decodePreset(R"({"keys":[50,48],"digit":1,"enabled":[true,true]})"));
  EXPECT_FALSE(decodePreset(R"({"intervals":[0.05,0.001],"digit":1,"enabled":[true,true]})"));
  EXPECT_FALSE(decodePreset(R"({"intervals":[0.05,0.001],"keys":[50,48],"enabled":[true,true]})"));
  EXPECT_FALSE(decodePreset(R"({"intervals":[0.05,0.001],"keys":[50,48],"digit":1})"));
  EXPECT_FALSE(decodePreset("{}"));
}

TEST(PresetJson, whole_numbers_serve_as_intervals) {
  EXPECT_EQ(required(decodePreset(presetText("intervals", "[1,2]"))).intervals,
            (std::vector<double>{1, 2}));
  EXPECT_EQ(required(decodePreset(presetText("intervals", "[18446744073709551615,-3]"))).intervals,
            (std::vector<double>{18446744073709551616.0, -3}));
}

TEST(PresetJson, intervals_of_another_type_are_refused) {
  for (const char* value : {"1", "null", "{}", "\"[1,2]\"", "[\"1\",\"2\"]", "[true,false]",
                            "[1,null]", "[[1],[2]]", "{\"0\":1,\"1\":2}"}) {
    EXPECT_FALSE(decodePreset(presetText("intervals", value))) << value;
  }
}

TEST(PresetJson, an_interval_beyond_double_is_refused) {
  EXPECT_FALSE(decodePreset(presetText("intervals", "[1e999,1]")));
}

TEST(PresetJson, key_codes_from_0_to_65535_are_read) {
  EXPECT_EQ(required(decodePreset(presetText("keys", "[0,65535]"))).keys,
            (std::vector<std::uint16_t>{0, 65535}));
}

TEST(PresetJson, key_codes_outside_that_range_are_refused) {
  for (const char* value : {"[-1,48]", "[65536,48]", "[50,65584]", "[18446744073709551615,48]",
                            "[1e30,48]", "[-9223372036854775808,48]"}) {
    EXPECT_FALSE(decodePreset(presetText("keys", value))) << value;
  }
}

TEST(PresetJson, key_codes_of_another_type_are_refused) {
  for (const char* value :
       {"50", "null", "[\"50\",\"48\"]", "[50.5,48]", "[true,48]", "[null,48]"}) {
    EXPECT_FALSE(decodePreset(presetText("keys", value))) << value;
  }
}

TEST(PresetJson, a_digit_that_is_no_integer_is_refused) {
  for (const char* value : {"1.5", "\"1\"", "true", "null", "[1]", "{}", "9223372036854775808",
                            "1e19", "-9223372036854777856.0"}) {
    EXPECT_FALSE(decodePreset(presetText("digit", value))) << value;
  }
}

TEST(PresetJson, integers_of_the_whole_range_are_read_as_digits) {
  EXPECT_EQ(required(decodePreset(presetText("digit", "42"))).digit, 42);
  EXPECT_EQ(required(decodePreset(presetText("digit", "-3"))).digit, -3);
  EXPECT_EQ(required(decodePreset(presetText("digit", "9223372036854775807"))).digit,
            std::numeric_limits<std::int64_t>::max());
}

TEST(PresetJson, an_integer_may_be_written_with_a_fraction_of_zero) {
  EXPECT_EQ(required(decodePreset(presetText("digit", "4.0"))).digit, 4);
  EXPECT_EQ(required(decodePreset(presetText("digit", "0.4e1"))).digit, 4);
  EXPECT_EQ(required(decodePreset(presetText("keys", "[50.0,48]"))).keys[0], 50);
}

TEST(PresetJson, enabled_flags_of_another_type_are_refused) {
  for (const char* value : {"true", "null", "[1,0]", "[\"true\",\"false\"]", "[true,null]"}) {
    EXPECT_FALSE(decodePreset(presetText("enabled", value))) << value;
  }
}

TEST(PresetJson, malformed_text_is_refused) {
  for (const char* text : {"", " ", "x", "{", "}", "null", "[]", "1", "\"text\"", "{\"digit\":1,}",
                           "{'digit':1}", "{\"digit\" 1}", "nul", "{\"a\":NaN}", "{}{}"}) {
    EXPECT_FALSE(decodePreset(text)) << text;
  }
  EXPECT_FALSE(decodePreset(std::string(startJson) + "x"));
  EXPECT_FALSE(decodePreset(std::string(startJson) + "\0"s));
  EXPECT_FALSE(decodePreset(startJson.substr(0, startJson.size() - 1)));
}

TEST(PresetJson, every_beginning_of_a_record_is_refused) {
  for (std::size_t size = 0; size < startJson.size(); ++size) {
    EXPECT_FALSE(decodePreset(startJson.substr(0, size))) << size;
  }
}

TEST(PresetJson, of_a_member_given_twice_the_last_counts) {
  EXPECT_EQ(decodePreset(R"({"digit":"x","intervals":[0.05,0.001],"keys":[50,48],
                             "digit":1,"enabled":[true,true]})"),
            startPreset());
}

}  // namespace
}  // namespace vorrin
