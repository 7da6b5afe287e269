#include "platform/linux/session/session_presence.h"

#include <gtest/gtest.h>

#include <vector>

namespace vorrin {
namespace {

class SessionPresenceTest : public testing::Test {
 protected:
  std::vector<bool> told_;
  SessionPresence presence_{[this](bool isActive) { told_.push_back(isActive); }};
};

TEST_F(SessionPresenceTest, the_user_is_there_at_first) {
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, only_changes_are_told) {
  presence_.setLocked("a", true);
  presence_.setLocked("a", true);
  presence_.setOnScreen(false);
  presence_.setOnScreen(true);
  presence_.setLocked("a", false);
  presence_.setLocked("a", false);
  EXPECT_EQ(told_, (std::vector{false, true}));
}

TEST_F(SessionPresenceTest, everybody_who_said_locked_has_to_take_it_back) {
  presence_.setLocked("a", true);
  presence_.setLocked("b", true);
  presence_.setLocked("a", false);
  EXPECT_FALSE(presence_.isActive());
  presence_.setLocked("b", false);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_request_to_lock_counts_at_once_and_ends_with_the_lock) {
  presence_.lockWasRequested();
  EXPECT_FALSE(presence_.isActive());
  presence_.setLocked("a", true);
  presence_.setLocked("a", false);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, somebody_who_knows_of_no_lock_does_not_end_a_request) {
  presence_.lockWasRequested();
  presence_.setLocked("a", false);
  EXPECT_FALSE(presence_.isActive());
  presence_.unlockWasRequested();
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_request_to_unlock_does_not_open_a_lock_that_somebody_sees) {
  presence_.setLocked("a", true);
  presence_.unlockWasRequested();
  EXPECT_FALSE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_user_seen_at_a_window_ends_what_nobody_else_would_take_back) {
  presence_.lockWasRequested();
  presence_.setOnScreen(false);
  presence_.userWasSeen();
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_window_that_becomes_active_behind_a_lock_screen_unlocks_nothing) {
  presence_.setLocked("a", true);
  presence_.userWasSeen();
  EXPECT_FALSE(presence_.isActive());
}

}  // namespace
}  // namespace vorrin
