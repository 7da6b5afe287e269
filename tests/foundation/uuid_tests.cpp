#include "platform/uuid.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace vorrin {
namespace {

TEST(Uuid, has_the_standard_form_in_upper_case) {
  EXPECT_THAT(newUuidString(), testing::MatchesRegex("[0-9A-F]+-[0-9A-F]+-[0-9A-F]+-[0-9A-F]+-"
                                                     "[0-9A-F]+"));
  const auto uuid = newUuidString();
  ASSERT_EQ(uuid.size(), 36u);
  for (const std::size_t dash : {8u, 13u, 18u, 23u}) EXPECT_EQ(uuid[dash], '-');
}

TEST(Uuid, is_marked_as_a_random_one) {
  const auto uuid = newUuidString();
  EXPECT_EQ(uuid[14], '4');
  EXPECT_NE(std::string("89AB").find(uuid[19]), std::string::npos);
}

TEST(Uuid, never_comes_twice) {
  constexpr std::size_t count = 10'000;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < count; ++i) seen.insert(newUuidString());
  EXPECT_EQ(seen.size(), count);
}

}  // namespace
}  // namespace vorrin
