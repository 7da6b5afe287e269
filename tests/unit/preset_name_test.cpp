#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "settings/preset_store.h"

namespace vorrin {
namespace {

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
