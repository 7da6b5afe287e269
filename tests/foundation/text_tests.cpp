#include "platform/text.h"

#include <gtest/gtest.h>
#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <clocale>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "platform/portable/utf8.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

TEST(Trimmed, takes_off_every_kind_of_white_space) {
  for (const char* space :
       {"\t",     "\n",     "\v",     "\f",     "\r",     " ",      "\u0085", "\u00A0", "\u1680",
        "\u2000", "\u2001", "\u2002", "\u2003", "\u2004", "\u2005", "\u2006", "\u2007", "\u2008",
        "\u2009", "\u200A", "\u200B", "\u2028", "\u2029", "\u202F", "\u205F", "\u3000"}) {
    EXPECT_EQ(trimmed(space + "x"s + space), "x");
    EXPECT_EQ(trimmed(space), "");
  }
}

TEST(Trimmed, keeps_what_is_inside_and_invisible_characters_that_are_no_white_space) {
  for (const char* text : {"", "x", "Work  hard", "👩‍👩‍👧‍👦"})
    EXPECT_EQ(trimmed(text), text);
  EXPECT_EQ(trimmed({}), "");
  for (const char* character : {"\u200C", "\u200D", "\uFEFF", "\u2060", "\u180E", "\u00AD"}) {
    EXPECT_EQ(trimmed(character), character);
  }
  EXPECT_EQ(trimmed(" \uFEFF name "), "\uFEFF name");
  EXPECT_EQ(trimmed("\0"s), "\0"s);
}

TEST(Trimmed, keeps_bytes_that_are_not_utf8) {
  EXPECT_EQ(trimmed(" \xFF "), "\xFF");
  EXPECT_EQ(trimmed(" \xE2\x80"), "\xE2\x80");
  EXPECT_EQ(trimmed("\x83 \x80\xA0 "), "\x83 \x80\xA0");
}

TEST(ShortenedInMiddle, keeps_as_much_of_both_ends_as_fits) {
  const auto shortened = [](const std::string& text, std::size_t most) {
    return shortenedInMiddle(text,
                             [most](const auto& some) { return characterCount(some) <= most; });
  };
  EXPECT_EQ(shortened("Saved “abcdef”.", 15), "Saved “abcdef”.");
  EXPECT_EQ(shortened("Saved “abcdef”.", 14), "Saved “…cdef”.");
  EXPECT_EQ(shortened("👩‍👩‍👧‍👦Größe👩‍👩‍👧‍👦", 3),
            "👩‍👩‍👧‍👦…👩‍👩‍👧‍👦");
  EXPECT_EQ(shortened("ab", 1), "…");
}

TEST(CharacterCount, counts_what_is_not_utf8_and_a_leading_byte_order_mark) {
  EXPECT_EQ(characterCount("a\xC3"), 2u);
  EXPECT_EQ(characterCount("\xED\xA0\x80"), 3u);  // half of a surrogate pair
  EXPECT_EQ(characterCount("\0\0"s), 2u);
  EXPECT_EQ(characterCount("\uFEFFx"), 2u);
}

std::string utf8(utf8proc_int32_t code) {
  std::array<utf8proc_uint8_t, 4> bytes{};
  const auto size = utf8proc_encode_char(code, bytes.data());
  return {bytes.begin(), bytes.begin() + size};
}

TEST(CharacterCount, agrees_with_the_unicode_projects_own_cases) {
  std::ifstream file(VORRIN_GRAPHEME_BREAK_TEST);
  ASSERT_TRUE(file) << "no such file: " << VORRIN_GRAPHEME_BREAK_TEST;
  int cases = 0;
  for (std::string line; std::getline(file, line);) {
    std::istringstream parts(line.substr(0, line.find('#')));
    std::string text;
    std::size_t breaks = 0;
    for (std::string part; parts >> part;) {
      if (part == "÷") {
        ++breaks;
      } else if (part != "×") {
        text += utf8(std::stoi(part, nullptr, 16));
      }
    }
    if (text.empty()) continue;
    // There is one before the first character, too.
    EXPECT_EQ(characterCount(text) + 1, breaks) << line;
    ++cases;
  }
  EXPECT_GT(cases, 500);
}

TEST(LocalizedStandardSort, orders_names_as_a_user_expects) {
  const std::vector<std::string> inOrder{"",  "A",        "a9",        "a10", "b",
                                         "é", "Preset 2", "Preset 10", "Z"};
  auto names = inOrder;
  do {
    auto sorted = names;
    localizedStandardSort(sorted);
    ASSERT_EQ(sorted, inOrder);
    std::rotate(names.begin(), names.begin() + 4, names.end());
  } while (names != inOrder);
}

TEST(LocalizedStandardSort, tells_names_apart_by_their_case) {
  std::vector<std::string> names{"work", "Work"};
  std::vector<std::string> others{"Work", "work"};
  localizedStandardSort(names);
  localizedStandardSort(others);
  EXPECT_EQ(names, others);
}

TEST(LocalizedStandardSort, leaves_names_that_are_the_same_in_their_order) {
  for (const std::vector<std::string>& same :
       {std::vector<std::string>{"caf\u00E9", "cafe\u0301"}, {"cafe\u0301", "caf\u00E9"}, {}}) {
    auto names = same;
    localizedStandardSort(names);
    EXPECT_EQ(names, same);
  }
}

TEST(ParseNumber, does_not_take_an_old_error_for_its_own) {
  errno = ERANGE;
  EXPECT_EQ(parseNumber("1"), 1.0);
}

TEST(ParseNumber, takes_the_full_stop_for_the_decimal_separator_in_every_locale) {
  ::setenv("LOCPATH", VORRIN_TEST_LOCALES, 1);
  ASSERT_NE(std::setlocale(LC_ALL, "de_DE.UTF-8"), nullptr);
  ASSERT_EQ(std::strtod("0,5", nullptr), 0.5) << "the locale has no decimal comma";
  EXPECT_EQ(parseNumber("0.5"), 0.5);
  EXPECT_FALSE(parseNumber("0,5"));
  std::setlocale(LC_ALL, "C");
  ::unsetenv("LOCPATH");
}

TEST(Utf8, has_a_replacement_character_for_every_byte_that_belongs_to_no_character) {
  for (const std::string& bytes :
       {"\x80"s, "\xBF"s, "\xFF"s, "\xC0\xAF"s, "\xE2\x80"s, "\xE0\x80\xAF"s, "\xED\xA0\x80"s,
        "\xF0\x80\x80\xAF"s, "\xF0\x9F\x98"s, "\xF4\x90\x80\x80"s, "\xF5\x80\x80\x80"s}) {
    EXPECT_FALSE(isUtf8(bytes));
    EXPECT_EQ(utf16("a" + bytes + "z"), u"a" + std::u16string(bytes.size(), u'\uFFFD') + u"z");
  }
  EXPECT_TRUE(isUtf8("a\0\u00A0\uFEFF😀"s));
  EXPECT_EQ(utf16("a\0\u00A0\uFFFF😀\U0010FFFF"s), u"a\0\u00A0\uFFFF😀\U0010FFFF"s);
}

}  // namespace
}  // namespace vorrin
