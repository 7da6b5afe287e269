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
  EXPECT_EQ(presetName("Work"), "Work");
  EXPECT_EQ(presetName("  Work  "), "Work");
  EXPECT_EQ(presetName("\t\r\n Work\n"), "Work");
  EXPECT_EQ(presetName("Night shift 2"), "Night shift 2");
}

TEST(PresetName, white_space_of_every_script_is_taken_away) {
  for (const char* blank : {"\u00A0", "\u1680", "\u2000", "\u2003", "\u2009", "\u2028", "\u2029",
                            "\u202F", "\u205F", "\u3000", "\u0085", "\v", "\f"}) {
    EXPECT_EQ(presetName(blank + std::string("Work") + blank), "Work")
        << testing::PrintToString(blank);
    EXPECT_FALSE(presetName(blank)) << testing::PrintToString(blank);
  }
}

TEST(PresetName, empty_and_blank_texts_are_refused) {
  EXPECT_FALSE(presetName(""));
  EXPECT_FALSE(presetName(" "));
  EXPECT_FALSE(presetName(" \t\r\n "));
}

TEST(PresetName, has_at_most_80_characters) {
  EXPECT_EQ(presetName(times(80, "a")), times(80, "a"));
  EXPECT_FALSE(presetName(times(81, "a")));
}

TEST(PresetName, white_space_around_it_does_not_count) {
  EXPECT_EQ(presetName(times(50, " ") + times(80, "a") + times(50, "\n")), times(80, "a"));
  EXPECT_FALSE(presetName(" " + times(81, "a") + " "));
}

TEST(PresetName, white_space_within_it_counts) {
  EXPECT_TRUE(presetName("a" + times(78, " ") + "b"));
  EXPECT_FALSE(presetName("a" + times(79, " ") + "b"));
}

TEST(PresetName, characters_are_counted_as_a_user_counts_them) {
  const std::vector<std::string> characters{
      "é",                    // one code point
      "e\u0301",              // a letter and a combining mark
      "a\u0308\u0323\u0304",  // several marks
      "日",
      "한",
      "\u1112\u1161\u11AB",  // a syllable, composed and of its parts
      "ع",
      "ש\u05C1\u05BC",
      "ก\u0E33",
      "கி",
      "नि",
      "😀",
      "👍🏽",                   // with a skin tone
      "👩‍👩‍👧‍👦",  // several people joined
      "🇩🇪",                         // a flag
      "🏳️‍🌈",
      "1️⃣",
      "❤️",
      "🏴\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F",  // a flag spelt by tags
      "\r\nx"};
  for (const std::string& character : characters) {
    const bool two = character == "\r\nx";
    const int most = two ? 40 : 80;
    const std::string longest = times(most, character);
    EXPECT_TRUE(presetName(longest)) << character;
    EXPECT_FALSE(presetName("x" + longest + "x")) << character;
  }
}

TEST(PresetName, bytes_that_are_not_utf_8_do_no_harm) {
  for (const char* bytes : {"\xFF", "a\xC3", "\xC0\xAF", "\xED\xA0\x80", "\xF5\x80\x80\x80"}) {
    EXPECT_NO_FATAL_FAILURE(static_cast<void>(presetName(bytes)));
  }
}

}  // namespace
}  // namespace vorrin
