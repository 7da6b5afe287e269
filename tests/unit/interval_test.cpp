#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "settings/preset.h"
#include "support/random.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

struct Accepted {
  const char* text;
  double number;
};

TEST(ValidInterval, gives_the_number_unrounded_in_every_form_that_the_c_library_reads) {
  for (const auto& [text, number] : {Accepted{"0.05", 0.05},
                                     {"0.125", 0.125},
                                     {"12", 12},
                                     {"0.001", 0.001},
                                     {"3600", 3600},
                                     {"3600.0000", 3600},
                                     {"0.0012345678901234567", 0.0012345678901234567},
                                     {"+1", 1},
                                     {"1.", 1},
                                     {".5", 0.5},
                                     {"5e-1", 0.5},
                                     {"5E+1", 50},
                                     {"0x1p-3", 0.125},
                                     {"0x.8", 0.5},
                                     {"000000000000000000000001", 1}}) {
    EXPECT_EQ(validInterval(text), number) << text;
  }
}

TEST(ValidInterval, refuses_everything_else) {
  const std::vector<std::string> outOfRange{"0.0009", "3600.5", "0",        "-0",    "-1",
                                            "-0.05",  "1e9",    "1e-9",     "1e999", "-1e999",
                                            "1e-999", "1e-310", "0x1p99999"};
  const std::vector<std::string> justOutside{"0.00099999999999999980", "3600.0000000000005"};
  const std::vector<std::string> notFinite{"inf", "INF", "-inf",  "infinity",
                                           "nan", "NaN", "nan(1)"};
  const std::vector<std::string> noNumber{"",    "abc", ".",    "+",       "-",
                                          "e5",  "1e",  "0x",   "1..2",    "--1",
                                          "+-1", "½",   "1\0"s, "1\0002"s, "\0001"s};
  const std::vector<std::string> spaceBefore{" 1", "\t1", "\n1", "\v1", "\f1", "\r1", " "};
  const std::vector<std::string> moreAfter{"1 ",   "1\n",   "1 s",   "1s",   "1,5",
                                           "1.5.", "1'000", "1 000", "0.05f"};
  for (const auto& texts : {outOfRange, justOutside, notFinite, noNumber, spaceBefore, moreAfter}) {
    for (const std::string& text : texts) {
      EXPECT_FALSE(validInterval(text)) << testing::PrintToString(text);
    }
  }
}

TEST(ValidInterval, reads_no_further_than_its_text) {
  const std::string_view text = "1234";
  EXPECT_EQ(validInterval(text.substr(0, 2)), 12.0);
  EXPECT_FALSE(validInterval(text.substr(0, 0)));
}

TEST(ValidInterval, very_long_texts_are_read_to_their_end) {
  const std::string zeros(1'000'000, '0');
  EXPECT_EQ(validInterval("0.5" + zeros), 0.5);
  EXPECT_EQ(validInterval(zeros + "2"), 2.0);
  EXPECT_FALSE(validInterval("0.5" + zeros + "x"));
}

/// The rule in terms of the C library itself, in the C locale of this process.
std::optional<double> intervalByStrtod(const std::string& text) {
  if (text.empty() || std::isspace(static_cast<unsigned char>(text.front())) != 0) {
    return std::nullopt;
  }
  char* end = nullptr;
  errno = 0;
  const double number = std::strtod(text.c_str(), &end);
  if (errno == ERANGE || end != text.data() + text.size()) return std::nullopt;
  if (!std::isfinite(number) || number < 0.001 || number > 3600) return std::nullopt;
  return number;
}

std::string randomNearBound(test::Random& random) {
  double number = random.chance(0.5) ? 0.001 : 3600;
  for (int left = random.between(0, 3); left > 0; --left) {
    number = std::nextafter(number, random.chance(0.5) ? 0 : 1e9);
  }
  std::array<char, 400> buffer{};
  const int size =
      std::snprintf(buffer.data(), buffer.size(), "%.*f", random.between(10, 300), number);
  return {buffer.data(), static_cast<std::size_t>(size)};
}

/// A number that can be read, or nearly.
std::string randomNumberLike(test::Random& random) {
  static const std::vector<std::string> starts{"", "", "", "+", "-", "0x", "0X1.", "inf", "nan(1"};
  static const std::vector<std::string> parts{"0", "1",  "5",  "9",   "25",
                                              ".", "e-", "E1", "p-3", "a"};
  if (random.chance(0.2)) return randomNearBound(random);
  std::string text = random.of(starts) + std::string(random.chance(0.1) ? 400 : 0, '0');
  for (int left = random.between(1, 8); left > 0; --left) text += random.of(parts);
  return text;
}

void spoil(std::string& text, test::Random& random) {
  static const std::vector<std::string> junk{" ",   "\t",       "\v", ",",    "s", "-", "x", "_",
                                             "\0"s, "\xC2\xA0", "٣",  "\xFF", "'", "0", "p", "("};
  text.insert(random.between<std::size_t>(0, text.size()), random.of(junk));
}

TEST(ValidInterval, agrees_with_the_c_library_on_random_texts) {
  test::Random random;
  int accepted = 0;
  for (int count = 0; count < 200'000; ++count) {
    std::string text = randomNumberLike(random);
    while (random.chance(0.2)) spoil(text, random);
    const auto expected = intervalByStrtod(text);
    accepted += expected ? 1 : 0;
    ASSERT_EQ(validInterval(text), expected) << testing::PrintToString(text);
  }
  EXPECT_GT(accepted, 10'000) << "too few of the texts were numbers to tell anything";
}

TEST(DecimalText, is_the_shortest_with_a_point_or_an_exponent) {
  const std::vector<std::pair<double, const char*>> cases{{0.05, "0.05"},
                                                          {0.125, "0.125"},
                                                          {0.1, "0.1"},
                                                          {0.001, "0.001"},
                                                          {1.0 / 3, "0.3333333333333333"},
                                                          {2, "2.0"},
                                                          {3600, "3600.0"},
                                                          {100'000, "100000.0"},
                                                          {0, "0.0"},
                                                          {-0.0, "-0.0"},
                                                          {-7, "-7.0"},
                                                          {1e-5, "1e-05"},
                                                          {1e16, "1e+16"},
                                                          {-1.5e300, "-1.5e+300"}};
  for (const auto& [number, text] : cases) EXPECT_EQ(decimalText(number), text);
}

TEST(DecimalText, writes_the_extremes_of_double) {
  using Limits = std::numeric_limits<double>;
  for (const double number : {Limits::max(), Limits::lowest(), Limits::min(), Limits::denorm_min(),
                              9999999999999998.0, 0.00010000000000000002}) {
    EXPECT_EQ(std::strtod(decimalText(number).c_str(), nullptr), number);
  }
  EXPECT_FALSE(validInterval(decimalText(Limits::infinity())));
  EXPECT_FALSE(validInterval(decimalText(Limits::quiet_NaN())));
}

TEST(DecimalText, of_random_intervals_reads_back_as_the_same_number) {
  test::Random random;
  for (int count = 0; count < 20'000; ++count) {
    double number = random.real(0.001, random.chance(0.5) ? 1 : 3600);
    if (random.chance(0.5)) number = std::round(number * 1000) / 1000;
    if (number < 0.001) continue;
    const std::string text = decimalText(number);
    ASSERT_EQ(validInterval(text), number) << text;
    ASSERT_EQ(text.find_first_not_of("0123456789."), std::string::npos) << text;
  }
}

}  // namespace
}  // namespace vorrin
