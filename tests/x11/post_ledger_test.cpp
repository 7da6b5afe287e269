#include "platform/linux/input/x11/post_ledger.h"

#include <gtest/gtest.h>

namespace vorrin::x11 {
namespace {

constexpr unsigned keyOne = 10;
constexpr unsigned keyTwo = 11;

struct PostLedgerTest : testing::Test {
  PostLedger ledger;
};

TEST_F(PostLedgerTest, an_event_of_a_request_of_ours_is_ours_once_and_others_are_not) {
  ledger.add(100, keyOne, true);
  EXPECT_FALSE(ledger.take(99, keyOne, true)) << "before our request was served";
  EXPECT_FALSE(ledger.take(100, keyTwo, true));
  EXPECT_FALSE(ledger.take(100, keyOne, false));
  EXPECT_TRUE(ledger.take(100, keyOne, true));
  EXPECT_FALSE(ledger.take(100, keyOne, true));
}

TEST_F(PostLedgerTest, numbers_that_start_again_follow_those_before) {
  ledger.add(0xFFFFFFFF, keyOne, false);
  ledger.add(0, keyTwo, true);
  EXPECT_TRUE(ledger.take(0, keyTwo, true));
  EXPECT_FALSE(ledger.take(0xFFFFFFFF, keyOne, false));
}

}  // namespace
}  // namespace vorrin::x11
