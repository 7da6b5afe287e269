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

TEST(PresetsJson, no_presets_are_an_empty_object) {
  EXPECT_EQ(encodePresets({}), "{}");
  EXPECT_EQ(decodePresets("{}"), (std::map<std::string, Preset>{}));
}

TEST(PresetsJson, the_names_are_the_names_of_members) {
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
      {"\xF4\x8F\xBF\xBF", startPreset()}};
  EXPECT_EQ(decodePresets(required(encodePresets(presets))), presets);
}

TEST(PresetsJson, escaped_names_are_read) {
  const std::string json = R"({"\u0057ork \ud83d\ude00\u0000":)" + std::string(startJson) + "}";
  EXPECT_EQ(decodePresets(json), (std::map<std::string, Preset>{{"Work 😀\0"s, startPreset()}}));
}

TEST(PresetsJson, names_that_are_not_utf_8_cannot_be_written) {
  for (const char* name :
       {"\xFF", "caf\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
    EXPECT_FALSE(encodePresets({{name, startPreset()}}));
  }
}

TEST(PresetsJson, text_that_is_not_utf_8_is_refused) {
  for (const char* name :
       {"\xFF", "caf\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
    EXPECT_FALSE(decodePresets("{\"" + std::string(name) + "\":" + std::string(startJson) + "}"));
  }
  EXPECT_FALSE(decodePresets("{\"\\ud800\":" + std::string(startJson) + "}"));
  EXPECT_FALSE(decodePresets("\xFF\xFE{\0}\0"s));
}

TEST(PresetsJson, one_broken_preset_makes_the_whole_unreadable) {
  const std::string good(startJson);
  EXPECT_TRUE(decodePresets("{\"a\":" + good + ",\"b\":" + good + "}"));
  EXPECT_FALSE(decodePresets("{\"a\":" + good + ",\"b\":{}}"));
  EXPECT_FALSE(decodePresets("{\"a\":null,\"b\":" + good + "}"));
  EXPECT_FALSE(decodePresets("{\"a\":" + good + ",\"b\":" + presetText("digit", "\"1\"") + "}"));
}

TEST(PresetsJson, presets_that_are_not_valid_are_read_all_the_same) {
  const auto presets = required(decodePresets("{\"a\":" + presetText("intervals", "[0]") + "}"));
  EXPECT_FALSE(presets.at("a").valid());
}

TEST(PresetsJson, anything_but_an_object_is_refused) {
  for (const char* text : {"", "not JSON", "[]", "null", "1", "\"{}\"", "[{}]"}) {
    EXPECT_FALSE(decodePresets(text)) << text;
  }
}

TEST(PresetsJson, of_a_name_given_twice_the_last_counts) {
  const std::string json =
      "{\"a\":" + std::string(startJson) + ",\"a\":" + presetText("digit", "7") + "}";
  EXPECT_EQ(required(decodePresets(json)).at("a").digit, 7);
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

TEST(PresetsJson, a_member_passed_over_may_be_as_deep_as_the_limit) {
  const auto withDepth = [](std::size_t levels) {
    std::string json(startJson);
    json.pop_back();
    return json + ",\"other\":" + std::string(levels, '[') + std::string(levels, ']') + "}";
  };
  EXPECT_EQ(decodePreset(withDepth(511)), startPreset());
  EXPECT_FALSE(decodePreset(withDepth(512)));
}

TEST(PresetsJson, brackets_in_names_nest_nothing) {
  const std::map<std::string, Preset> presets{{std::string(2000, '['), startPreset()},
                                              {"\\\"" + std::string(2000, '{'), startPreset()}};
  EXPECT_EQ(decodePresets(required(encodePresets(presets))), presets);
}

TEST(PresetsJson, large_text_does_no_harm) {
  EXPECT_FALSE(decodePresets(std::string(2'000'000, 'x')));
  EXPECT_FALSE(decodePresets("{\"" + std::string(2'000'000, 'x')));
  const std::string name(2'000'000, 'n');
  EXPECT_EQ(
      required(decodePresets("{\"" + name + "\":" + std::string(startJson) + "}")).begin()->first,
      name);
}

TEST(PresetsJson, random_presets_read_back_equal) {
  test::Random random;
  for (int round = 0; round < 300; ++round) {
    std::map<std::string, Preset> presets;
    for (int count = random.between(0, 30); count > 0; --count) {
      presets["name " + std::to_string(random.between(0, 1000))] = test::randomValidPreset(random);
    }
    ASSERT_EQ(decodePresets(required(encodePresets(presets))), presets);
  }
}

TEST(PresetsJson, spoilt_text_is_read_or_refused_but_does_no_harm) {
  test::Random random;
  const std::string json = required(encodePresets({{"a", startPreset()}, {"b", otherPreset()}}));
  for (int count = 0; count < 20'000; ++count) {
    std::string spoilt = json;
    for (int left = random.between(1, 4); left > 0; --left) {
      spoilt[random.between<std::size_t>(0, spoilt.size() - 1)] =
          static_cast<char>(random.between(0, 255));
    }
    const auto presets = decodePresets(spoilt);
    ASSERT_TRUE(!presets || encodePresets(*presets));
  }
}

}  // namespace
}  // namespace vorrin
