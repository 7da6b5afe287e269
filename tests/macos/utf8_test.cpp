#include "platform/macos/foundation/utf8.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

constexpr const char* replacement = "\xEF\xBF\xBD";

std::string replacements(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += replacement;
  return text;
}

TEST(RepairedUtf8, leaves_valid_text_unchanged) {
  const std::string text = "a\xC2\xA0\xE2\x80\x9C\xF0\x9F\x98\x80\xED\x9F\xBF\xF4\x8F\xBF\xBF";
  EXPECT_EQ(repairedUtf8(text), text);
  EXPECT_EQ(repairedUtf8(""), "");
}

TEST(RepairedUtf8, keeps_nul_characters) {
  const std::string text("a\0b", 3);
  EXPECT_EQ(repairedUtf8(text), text);
}

TEST(RepairedUtf8, replaces_every_stray_byte) {
  EXPECT_EQ(repairedUtf8("a\x80\xBFz"), "a" + replacements(2) + "z");
  EXPECT_EQ(repairedUtf8("\xFF\xFE"), replacements(2));
}

TEST(RepairedUtf8, replaces_a_character_cut_short_once) {
  EXPECT_EQ(repairedUtf8("\xE2\x80"), replacements(1));
  EXPECT_EQ(repairedUtf8("\xF0\x9F\x98z"), replacements(1) + "z");
}

TEST(RepairedUtf8, refuses_overlong_forms) {
  EXPECT_EQ(repairedUtf8("\xC0\xAF"), replacements(2));
  EXPECT_EQ(repairedUtf8("\xE0\x80\xAF"), replacements(3));
  EXPECT_EQ(repairedUtf8("\xF0\x80\x80\xAF"), replacements(4));
}

TEST(RepairedUtf8, refuses_surrogates_and_values_above_the_last_character) {
  EXPECT_EQ(repairedUtf8("\xED\xA0\x80"), replacements(3));
  EXPECT_EQ(repairedUtf8("\xF4\x90\x80\x80"), replacements(4));
}

}  // namespace
}  // namespace vorrin
