#include "settings/preset_json.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "support/presets.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::presetText;
using test::startJson;
using test::startPreset;
using namespace std::string_literals;

TEST(PresetJson, a_record_has_exactly_the_four_members) {
  EXPECT_EQ(encodePreset(startPreset()).value(),
            R"({"digit":1,"enabled":[true,true],"intervals":[0.05,0.001],"keys":[50,48]})");
}

TEST(PresetJson, a_record_is_read_in_any_order_of_members) {
  EXPECT_EQ(decodePreset(startJson), startPreset());
  EXPECT_EQ(decodePreset(R"( { "enabled" : [ true , true ], "digit" : 1,
                             "keys" : [ 50 , 48 ], "intervals":[5e-2, 0.001] } )"),
            startPreset());
}

TEST(PresetJson, an_encoded_record_reads_back_equal_valid_or_not) {
  const Preset odd{
      {1e300, -5e-324, 0}, {0, 65535, 53}, std::numeric_limits<std::int64_t>::min(), {}};
  for (const Preset& preset : {otherPreset(), odd, Preset{}}) {
    EXPECT_EQ(decodePreset(encodePreset(preset).value()), preset);
  }
}

TEST(PresetJson, a_record_without_one_of_the_members_is_refused) {
  for (const char* member : {"\"intervals\"", "\"keys\"", "\"digit\"", "\"enabled\""}) {
    std::string json(startJson);
    json.insert(json.find(member) + 1, "no ");
    EXPECT_FALSE(decodePreset(json)) << json;
  }
  EXPECT_FALSE(decodePreset("{}"));
}

TEST(PresetJson, a_member_of_another_type_or_beyond_its_range_is_refused) {
  const std::map<std::string, std::vector<const char*>> refused{
      {"intervals",
       {"1", "null", "{}", "\"[1,2]\"", "[\"1\",\"2\"]", "[true,false]", "[1,null]", "[[1],[2]]",
        "{\"0\":1,\"1\":2}", "[1e999,1]"}},
      {"keys",
       {"50", "null", "[\"50\",\"48\"]", "[50.5,48]", "[true,48]", "[null,48]", "[-1,48]",
        "[65536,48]", "[50,65584]", "[18446744073709551615,48]", "[1e30,48]"}},
      {"digit",
       {"1.5", "\"1\"", "true", "null", "[1]", "{}", "9223372036854775808", "1e19",
        "-9223372036854777856.0"}},
      {"enabled", {"true", "null", "[1,0]", "[\"true\",\"false\"]", "[true,null]"}}};
  for (const auto& [member, values] : refused) {
    for (const char* value : values) {
      EXPECT_FALSE(decodePreset(presetText(member, value))) << member << ": " << value;
    }
  }
}

TEST(PresetJson, numbers_are_read_however_they_are_written) {
  const auto intervals = [](const char* value) {
    return decodePreset(presetText("intervals", value)).value().intervals;
  };
  EXPECT_EQ(intervals("[1,2]"), (std::vector<double>{1, 2}));
  EXPECT_EQ(intervals("[18446744073709551615,-3]"),
            (std::vector<double>{18446744073709551616.0, -3}));
  EXPECT_EQ(decodePreset(presetText("keys", "[0,65535.0]")).value().keys,
            (std::vector<std::uint16_t>{0, 65535}));
  const std::map<std::string, std::int64_t> digitTexts{
      {"42", 42},
      {"-3", -3},
      {"4.0", 4},
      {"0.4e1", 4},
      {"9223372036854775807", std::numeric_limits<std::int64_t>::max()}};
  for (const auto& [text, digit] : digitTexts) {
    EXPECT_EQ(decodePreset(presetText("digit", text)).value().digit, digit) << text;
  }
}

TEST(PresetJson, malformed_text_is_refused) {
  for (const char* text : {"", " ", "x", "{", "}", "null", "[]", "1", "\"text\"", "{\"digit\":1,}",
                           "{'digit':1}", "{\"digit\" 1}", "nul", "{\"a\":NaN}", "{}{}"}) {
    EXPECT_FALSE(decodePreset(text)) << text;
  }
  EXPECT_FALSE(decodePreset(std::string(startJson) + "x"));
  EXPECT_FALSE(decodePreset(std::string(startJson) + "\0"s));
  for (std::size_t size = 0; size < startJson.size(); ++size) {
    EXPECT_FALSE(decodePreset(startJson.substr(0, size))) << size;
  }
}

TEST(PresetJson, other_members_are_passed_over_and_of_a_member_given_twice_the_last_counts) {
  EXPECT_EQ(decodePreset(R"({"new":{"keys":[1]},"digit":"x","intervals":[0.05,0.001],
                             "keys":[50,48],"digit":1,"Digit":"x","enabled":[true,true]})"),
            startPreset());
}

TEST(PresetsJson, the_names_are_the_names_of_members) {
  EXPECT_EQ(encodePresets({}), "{}");
  EXPECT_EQ(decodePresets("{}"), (std::map<std::string, Preset>{}));
  EXPECT_EQ(
      encodePresets({{"Work", startPreset()}}),
      R"({"Work":{"digit":1,"enabled":[true,true],"intervals":[0.05,0.001],"keys":[50,48]}})");
}

TEST(PresetsJson, names_with_every_kind_of_character_read_back_the_same) {
  const std::map<std::string, Preset> presets{
      {"", startPreset()},
      {"\"\\/\b\f\n\r\t", startPreset()},
      {"\0nul\x01\x1F\x7F"s, otherPreset()},
      {"naïve", startPreset()},
      {"日本語 한국어 العربية हिन्दी", otherPreset()},
      {"👩‍👩‍👧‍👦🇩🇪👍🏽", startPreset()},
      {"\xF4\x8F\xBF\xBF", startPreset()},
      {std::string(2000, '['), startPreset()},
      {"\\\"" + std::string(2000, '{'), otherPreset()},
      {std::string(2'000'000, 'n'), startPreset()}};
  EXPECT_EQ(decodePresets(encodePresets(presets).value()), presets);
}

TEST(PresetsJson, a_million_levels_do_no_harm) {
  constexpr std::size_t levels = 1'000'000;
  const std::string arrays = std::string(levels, '[') + std::string(levels, ']');
  EXPECT_FALSE(decodePresets(arrays));
  EXPECT_FALSE(decodePresets(std::string(levels, '[')));
  EXPECT_FALSE(decodePresets("{\"a\":" + arrays + "}"));
  EXPECT_FALSE(decodePresets("{\"a\":" + presetText("keys", arrays) + "}"));
  std::string objects;
  for (std::size_t level = 0; level < levels; ++level) objects += "{\"a\":";
  EXPECT_FALSE(decodePresets(objects));
  EXPECT_FALSE(decodePresets(objects + "1" + std::string(levels, '}')));
}

}  // namespace
}  // namespace vorrin
