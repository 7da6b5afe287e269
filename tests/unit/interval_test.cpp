#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <string>
#include <vector>

#include "settings/preset.h"
#include "support/random.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

TEST(ValidInterval, gives_the_number_unrounded) {
  EXPECT_EQ(validInterval("0.05"), 0.05);
  EXPECT_EQ(validInterval("0.125"), 0.125);
  EXPECT_EQ(validInterval("12"), 12.0);
  EXPECT_EQ(validInterval("0.0012345678901234567"), 0.0012345678901234567);
}

TEST(ValidInterval, takes_both_bounds) {
  EXPECT_EQ(validInterval("0.001"), 0.001);
  EXPECT_EQ(validInterval("3600"), 3600.0);
  EXPECT_EQ(validInterval("3600.0000"), 3600.0);
}

TEST(ValidInterval, refuses_the_nearest_numbers_outside_the_bounds) {
  EXPECT_FALSE(validInterval("0.00099999999999999980"));
  EXPECT_FALSE(validInterval("3600.0000000000005"));
}

TEST(ValidInterval, refuses_numbers_out_of_range) {
  for (const char* text : {"0.0009", "3600.5", "0", "-0", "-1", "-0.05", "1e9", "1e-9"}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, refuses_overflow_and_underflow) {
  for (const char* text : {"1e999", "-1e999", "1e-999", "1e-310", "0x1p99999"}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, refuses_what_is_not_finite) {
  for (const char* text : {"inf", "INF", "-inf", "infinity", "nan", "NaN", "nan(1)"}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, refuses_what_is_not_a_number) {
  for (const char* text : {"", "abc", ".", "+", "-", "e5", "1e", "0x", "1..2", "--1", "+-1", "½"}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, refuses_white_space_before_the_number) {
  for (const char* text : {" 1", "\t1", "\n1", "\v1", "\f1", "\r1", " "}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, refuses_anything_after_the_number) {
  for (const char* text : {"1 ", "1\n", "1 s", "1s", "1,5", "1.5.", "1'000", "1 000", "0.05f"}) {
    EXPECT_FALSE(validInterval(text)) << text;
  }
}

TEST(ValidInterval, takes_every_form_of_number_that_the_c_library_reads) {
  EXPECT_EQ(validInterval("+1"), 1.0);
  EXPECT_EQ(validInterval("1."), 1.0);
  EXPECT_EQ(validInterval(".5"), 0.5);
  EXPECT_EQ(validInterval("5e-1"), 0.5);
  EXPECT_EQ(validInterval("5E+1"), 50.0);
  EXPECT_EQ(validInterval("0x1p-3"), 0.125);
  EXPECT_EQ(validInterval("0x.8"), 0.5);
  EXPECT_EQ(validInterval("000000000000000000000001"), 1.0);
}

TEST(ValidInterval, a_nul_character_ends_no_text) {
  EXPECT_FALSE(validInterval("1\0"s));
  EXPECT_FALSE(validInterval("1\0002"s));
  EXPECT_FALSE(validInterval("\0001"s));
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

std::string randomDigits(test::Random& random, int most) {
  std::string digits;
  for (int left = random.between(0, most); left > 0; --left) {
    digits += static_cast<char>('0' + random.between(0, 9));
  }
  return digits;
}

std::string randomDecimal(test::Random& random) {
  std::string text = random.of<std::string>({"", "", "", "+", "-"});
  text += randomDigits(random, random.chance(0.1) ? 40 : 4);
  if (random.chance(0.6)) text += "." + randomDigits(random, random.chance(0.1) ? 400 : 6);
  if (random.chance(0.3)) {
    text += random.of<std::string>({"e", "E"}) + random.of<std::string>({"", "+", "-"}) +
            randomDigits(random, random.chance(0.1) ? 6 : 1);
  }
  return text;
}

std::string randomHexFloat(test::Random& random) {
  std::string text = random.of<std::string>({"0x", "0X", "-0x", "+0x"});
  for (int left = random.between(0, 6); left > 0; --left) {
    text += random.of<std::string>({"0", "1", "7", "9", "a", "F", ".", "c"});
  }
  if (random.chance(0.7))
    text += "p" + random.of<std::string>({"", "+", "-"}) + randomDigits(random, 2);
  return text;
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

std::string randomNumberLike(test::Random& random) {
  switch (random.between(0, 4)) {
    case 0:
      return randomHexFloat(random);
    case 1:
      return randomNearBound(random);
    case 2:
      return random.of<std::string>({"inf", "INFINITY", "nan", "nan(12)", "-nan", "infinit", "in"});
    default:
      return randomDecimal(random);
  }
}

void spoil(std::string& text, test::Random& random) {
  static const std::vector<std::string> junk{
      " ", "\t",  "\n",       "\v", "\f",   "\r", ",", "s", "e", ".", "-",           "x",
      "_", "\0"s, "\xC2\xA0", "٣",  "\xFF", "'",  "0", "5", "p", "(", "\xE2\x80\x89"};
  const auto place = random.between<std::size_t>(0, text.size());
  if (random.chance(0.3) && place < text.size()) {
    text.erase(place, 1);
  } else {
    text.insert(place, random.of(junk));
  }
}

TEST(ValidInterval, agrees_with_the_c_library_on_random_texts) {
  test::Random random;
  int accepted = 0;
  for (int count = 0; count < 200'000; ++count) {
    std::string text = randomNumberLike(random);
    while (random.chance(0.3)) spoil(text, random);
    const auto expected = intervalByStrtod(text);
    accepted += expected ? 1 : 0;
    ASSERT_EQ(validInterval(text), expected) << testing::PrintToString(text);
  }
  EXPECT_GT(accepted, 10'000) << "too few of the texts were numbers to tell anything";
}

TEST(DecimalText, writes_the_shortest_text) {
  EXPECT_EQ(decimalText(0.05), "0.05");
  EXPECT_EQ(decimalText(0.125), "0.125");
  EXPECT_EQ(decimalText(0.1), "0.1");
  EXPECT_EQ(decimalText(0.001), "0.001");
  EXPECT_EQ(decimalText(1.0 / 3), "0.3333333333333333");
}

TEST(DecimalText, ends_whole_numbers_in_a_point_and_zero) {
  EXPECT_EQ(decimalText(2), "2.0");
  EXPECT_EQ(decimalText(3600), "3600.0");
  EXPECT_EQ(decimalText(100'000), "100000.0");
  EXPECT_EQ(decimalText(0), "0.0");
  EXPECT_EQ(decimalText(-0.0), "-0.0");
  EXPECT_EQ(decimalText(-7), "-7.0");
}

TEST(DecimalText, writes_numbers_far_from_one_with_an_exponent) {
  EXPECT_EQ(decimalText(1e-5), "1e-05");
  EXPECT_EQ(decimalText(1e16), "1e+16");
  EXPECT_EQ(decimalText(-1.5e300), "-1.5e+300");
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

/// The fewest significant digits that still read back as `number`.
int fewestDigits(double number) {
  for (int digits = 1; digits < 17; ++digits) {
    std::array<char, 64> buffer{};
    std::snprintf(buffer.data(), buffer.size(), "%.*e", digits - 1, number);
    if (std::strtod(buffer.data(), nullptr) == number) return digits;
  }
  return 17;
}

int significantDigits(const std::string& plainDecimal) {
  std::string digits;
  for (const char character : plainDecimal) {
    if (character != '.' && (character != '0' || !digits.empty())) digits += character;
  }
  while (digits.ends_with('0')) digits.pop_back();
  return static_cast<int>(digits.size());
}

TEST(DecimalText, of_random_intervals_reads_back_as_the_same_number_and_is_the_shortest) {
  test::Random random;
  for (int count = 0; count < 20'000; ++count) {
    double number = random.real(0.001, random.chance(0.5) ? 1 : 3600);
    if (random.chance(0.5)) number = std::round(number * 1000) / 1000;
    if (number < 0.001) continue;
    const std::string text = decimalText(number);
    ASSERT_EQ(validInterval(text), number) << text;
    ASSERT_EQ(text.find_first_not_of("0123456789."), std::string::npos) << text;
    ASSERT_LE(significantDigits(text), fewestDigits(number)) << text;
  }
}

}  // namespace
}  // namespace vorrin
