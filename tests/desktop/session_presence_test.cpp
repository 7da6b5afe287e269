#include "platform/linux/session/session_presence.h"

#include <gtest/gtest.h>

#include <vector>

namespace vorrin {
namespace {

class SessionPresenceTest : public testing::Test {
 protected:
  std::vector<bool> told_;
  SessionPresence presence_{[this](bool isActive) { told_.push_back(isActive); }};
  const SessionPresence::Time request_{std::chrono::hours(1)};
};

constexpr LockSigns nothingSeen;
constexpr LockSigns keyboardHeld{.keyboardIsHeld = true};
constexpr LockSigns lockSeen{.keyboardIsHeld = true, .screensAreCovered = true};

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
  presence_.lockWasRequested(request_);
  EXPECT_FALSE(presence_.isActive());
  presence_.setLocked("a", true);
  presence_.setLocked("a", false);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, somebody_who_knows_of_no_lock_does_not_end_a_request) {
  presence_.lockWasRequested(request_);
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
  presence_.lockWasRequested(request_);
  presence_.setOnScreen(false);
  presence_.userWasSeen();
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_window_that_becomes_active_behind_a_lock_screen_unlocks_nothing) {
  presence_.setLocked("a", true);
  presence_.userWasSeen();
  EXPECT_FALSE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_lock_that_the_display_shows_counts_as_long_as_it_is_shown) {
  presence_.sawDisplay(lockSeen, request_);
  EXPECT_FALSE(presence_.isActive());
  presence_.userWasSeen();
  EXPECT_FALSE(presence_.isActive());
  presence_.sawDisplay(nothingSeen, request_);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_program_that_only_holds_the_keyboard_locks_nothing) {
  presence_.sawDisplay(keyboardHeld, request_);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_request_is_over_when_the_keyboard_is_given_back) {
  using std::chrono::seconds;
  presence_.lockWasRequested(request_);
  presence_.sawDisplay(nothingSeen, request_ + seconds(1));
  EXPECT_FALSE(presence_.isActive());
  presence_.sawDisplay(keyboardHeld, request_ + seconds(2));
  presence_.sawDisplay(keyboardHeld, request_ + std::chrono::hours(2));
  EXPECT_FALSE(presence_.isActive());
  presence_.sawDisplay(nothingSeen, request_ + std::chrono::hours(3));
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_request_that_nobody_heeds_is_over_in_time) {
  presence_.lockWasRequested(request_);
  const auto patience = SessionPresence::lockerPatience;
  presence_.sawDisplay(nothingSeen, request_ + patience - std::chrono::milliseconds(1));
  EXPECT_FALSE(presence_.isActive());
  presence_.sawDisplay(nothingSeen, request_ + patience);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, what_was_seen_before_a_request_says_nothing_of_it) {
  presence_.sawDisplay(lockSeen, request_);
  presence_.sawDisplay(nothingSeen, request_);
  presence_.lockWasRequested(request_);
  presence_.sawDisplay(nothingSeen, request_);
  EXPECT_FALSE(presence_.isActive());
}

TEST_F(SessionPresenceTest, the_display_does_not_end_what_a_screen_saver_says) {
  presence_.setLocked("a", true);
  presence_.sawDisplay(lockSeen, request_);
  presence_.sawDisplay(nothingSeen, request_ + std::chrono::hours(1));
  EXPECT_FALSE(presence_.isActive());
}

}  // namespace
}  // namespace vorrin
