#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "settings/preset.h"

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
  std::istringstream words(
      "0.0009 3600.5 0 -0 -1 -0.05 1e9 1e-9 1e999 -1e999 1e-999 1e-310 0x1p99999 "
      "0.00099999999999999980 3600.0000000000005 inf INF -inf infinity nan NaN nan(1) "
      "abc . + - e5 1e 0x 1..2 --1 +-1 ½ 1s 1,5 1.5. 1'000 0.05f");
  std::vector<std::string> texts{std::istream_iterator<std::string>(words), {}};
  for (const std::string& space : {" "s, "\t"s, "\n"s, "\v"s, "\f"s, "\r"s, "\0"s}) {
    texts.insert(texts.end(), {space, space + "1", "1" + space, "1" + space + "000"});
  }
  texts.emplace_back();
  for (const std::string& text : texts) {
    EXPECT_FALSE(validInterval(text)) << testing::PrintToString(text);
  }
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

}  // namespace
}  // namespace vorrin
