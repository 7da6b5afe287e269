#include "platform/uuid.h"

#include <gtest/gtest.h>

#include <set>

namespace vorrin {
namespace {

TEST(Uuid, is_a_random_one_in_the_standard_form_in_upper_case) {
  const std::string form = "########-####-4###-v###-############";
  const auto uuid = newUuidString();
  ASSERT_EQ(uuid.size(), form.size());
  for (std::size_t place = 0; place < form.size(); ++place) {
    const std::string allowed = form[place] == '#'   ? "0123456789ABCDEF"
                                : form[place] == 'v' ? "89AB"
                                                     : std::string(1, form[place]);
    EXPECT_NE(allowed.find(uuid[place]), std::string::npos) << uuid;
  }
}

TEST(Uuid, never_comes_twice) {
  constexpr std::size_t count = 1'000;
  std::set<std::string> seen;
  for (std::size_t i = 0; i < count; ++i) seen.insert(newUuidString());
  EXPECT_EQ(seen.size(), count);
}

}  // namespace
}  // namespace vorrin
