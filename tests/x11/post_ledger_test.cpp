#include "platform/linux/input/x11/post_ledger.h"

#include <gtest/gtest.h>

#include <memory>

namespace vorrin::x11 {
namespace {

constexpr Post posted{Post::Reason::posted, 7};
constexpr unsigned keyOne = 10;
constexpr unsigned keyTwo = 11;

struct PostLedgerTest : testing::Test {
  const std::unique_ptr<PostLedger> owned = std::make_unique<PostLedger>();
  PostLedger& ledger = *owned;
};

TEST_F(PostLedgerTest, an_event_of_a_request_of_ours_is_ours) {
  ledger.add(100, keyOne, true, posted);
  const std::optional<Post> post = ledger.take(100, keyOne, true);
  ASSERT_TRUE(post);
  EXPECT_EQ(post->userData, 7);
}

TEST_F(PostLedgerTest, an_event_without_an_entry_is_somebody_elses) {
  EXPECT_FALSE(ledger.take(100, keyOne, true));
}

TEST_F(PostLedgerTest, an_event_before_our_request_was_served_is_somebody_elses) {
  ledger.add(100, keyOne, true, posted);
  EXPECT_FALSE(ledger.take(99, keyOne, true));
  EXPECT_TRUE(ledger.take(100, keyOne, true));
}

TEST_F(PostLedgerTest, a_second_event_with_the_serial_is_somebody_elses) {
  ledger.add(100, keyOne, true, posted);
  EXPECT_TRUE(ledger.take(100, keyOne, true));
  EXPECT_FALSE(ledger.take(100, keyOne, true));
}

TEST_F(PostLedgerTest, another_key_or_direction_is_somebody_elses) {
  ledger.add(100, keyOne, true, posted);
  EXPECT_FALSE(ledger.take(100, keyTwo, true));
  EXPECT_FALSE(ledger.take(100, keyOne, false));
  EXPECT_TRUE(ledger.take(100, keyOne, true));
}

TEST_F(PostLedgerTest, a_request_that_made_no_event_does_not_hide_the_next) {
  ledger.add(100, keyOne, false, posted);
  ledger.add(101, keyTwo, true, {Post::Reason::forwarded, 0});
  const std::optional<Post> post = ledger.take(101, keyTwo, true);
  ASSERT_TRUE(post);
  EXPECT_EQ(post->reason, Post::Reason::forwarded);
}

TEST_F(PostLedgerTest, a_full_ledger_gives_up_its_oldest_entries) {
  constexpr unsigned long many = 20000;
  for (unsigned long serial = 1; serial <= many; ++serial) ledger.add(serial, keyOne, true, posted);
  EXPECT_FALSE(ledger.take(1, keyOne, true));
  EXPECT_TRUE(ledger.take(many - 1, keyOne, true));
  EXPECT_TRUE(ledger.take(many, keyOne, true));
  EXPECT_FALSE(ledger.take(many, keyOne, true));
}

}  // namespace
}  // namespace vorrin::x11
