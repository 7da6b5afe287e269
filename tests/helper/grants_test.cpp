#include "input_helper/grants.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace vorrin::input_helper {
namespace {

struct GrantsTest : testing::Test {
  GrantsTest() : folder(::mkdtemp(std::string("/tmp/vorrin-grants-XXXXXX").data())) {}
  ~GrantsTest() override { std::filesystem::remove_all(folder); }

  std::filesystem::path folder;
};

TEST_F(GrantsTest, what_a_user_decided_last_holds_for_that_user_alone) {
  const Grants grants(folder);
  EXPECT_EQ(grants.of(1, "one"), Decision::ask);
  for (const auto decision : {Decision::allow, Decision::refuse, Decision::allow, Decision::ask}) {
    EXPECT_TRUE(grants.store(1, "one", decision));
    EXPECT_EQ(grants.of(1, "one"), decision);
    EXPECT_EQ(grants.of(2, "two"), Decision::ask);
    EXPECT_EQ(grants.of(1, "two"), Decision::ask) << "the number was given away";
  }
  EXPECT_TRUE(std::filesystem::is_empty(folder));
}

TEST_F(GrantsTest, what_was_decided_can_be_taken_back_by_the_number_alone) {
  const Grants grants(folder);
  ASSERT_TRUE(grants.store(1, "one", Decision::allow));
  ASSERT_TRUE(grants.store(11, "eleven", Decision::allow));
  EXPECT_TRUE(grants.store(1, "", Decision::ask));
  EXPECT_EQ(grants.of(1, "one"), Decision::ask);
  EXPECT_EQ(grants.of(11, "eleven"), Decision::allow);
}

TEST_F(GrantsTest, without_a_place_nothing_is_decided) {
  const Grants grants(folder / "missing");
  EXPECT_FALSE(grants.store(1, "one", Decision::allow));
  EXPECT_EQ(grants.of(1, "one"), Decision::ask);
}

}  // namespace
}  // namespace vorrin::input_helper
