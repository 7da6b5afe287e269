#include "platform/portable/utf8.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

using namespace std::string_literals;

TEST(Utf8, gives_every_character_of_a_valid_text) {
  EXPECT_EQ(utf16("a\u00A0\u201C\uD7FF\uFFFF"), u"a\u00A0\u201C\uD7FF\uFFFF");
  EXPECT_EQ(utf16("\U00010000😀\U0010FFFF"), u"\U00010000😀\U0010FFFF");
  EXPECT_EQ(utf16("a\0b"s), u"a\0b"s);
  EXPECT_EQ(utf16(""), u"");
}

TEST(Utf8, keeps_a_mark_of_the_byte_order) {
  EXPECT_EQ(utf16("\uFEFF"), u"\uFEFF");
  EXPECT_EQ(utf16("\uFEFFname"), u"\uFEFFname");
}

TEST(Utf8, has_a_replacement_character_for_every_byte_that_belongs_to_no_character) {
  for (const std::string& bytes :
       {"\x80"s, "\xBF"s, "\xFF"s, "\xC0\xAF"s, "\xE2\x80"s, "\xE0\x80\xAF"s, "\xED\xA0\x80"s,
        "\xF0\x80\x80\xAF"s, "\xF0\x9F\x98"s, "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s}) {
    EXPECT_FALSE(isUtf8(bytes));
    EXPECT_EQ(utf16("a" + bytes + "z"), u"a" + std::u16string(bytes.size(), u'\uFFFD') + u"z");
  }
  EXPECT_TRUE(isUtf8("a\0\u00A0\uFEFF😀"s));
}

}  // namespace
}  // namespace vorrin
