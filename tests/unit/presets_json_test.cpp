#include "settings/preset_json.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

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

std::string named(const std::string& name) {
  return "{\"" + name + "\":" + std::string(startJson) + "}";
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
  EXPECT_EQ(decodePresets(required(encodePresets(presets))), presets);
}

TEST(PresetsJson, escaped_names_are_read) {
  EXPECT_EQ(decodePresets(named(R"(\u0057ork \ud83d\ude00\u0000)")),
            (std::map<std::string, Preset>{{"Work 😀\0"s, startPreset()}}));
}

TEST(PresetsJson, names_that_are_not_utf_8_can_neither_be_written_nor_read) {
  for (const std::string name :
       {"\xFF", "caf\xE9", "\xC0\xAF", "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xE2\x82"}) {
    EXPECT_FALSE(encodePresets({{name, startPreset()}}));
    EXPECT_FALSE(decodePresets(named(name)));
  }
  EXPECT_FALSE(decodePresets(named("\\ud800")));
  EXPECT_FALSE(decodePresets("\xFF\xFE{\0}\0"s));
}

TEST(PresetsJson, one_broken_preset_makes_the_whole_unreadable) {
  const std::string good(startJson);
  EXPECT_TRUE(decodePresets("{\"a\":" + good + ",\"b\":" + presetText("intervals", "[0]") + "}"));
  for (const std::string& broken : {"{}"s, "null"s, presetText("digit", "\"1\"")}) {
    EXPECT_FALSE(decodePresets("{\"a\":" + good + ",\"b\":" + broken + "}")) << broken;
  }
}

TEST(PresetsJson, anything_but_an_object_is_refused) {
  for (const std::string& text :
       {""s, "not JSON"s, "[]"s, "null"s, "1"s, "\"{}\""s, "[{}]"s, std::string(2'000'000, 'x'),
        "{\"" + std::string(2'000'000, 'x')}) {
    EXPECT_FALSE(decodePresets(text)) << text.substr(0, 20);
  }
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

}  // namespace
}  // namespace vorrin
