#include <gtest/gtest.h>

#include <cmath>
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
