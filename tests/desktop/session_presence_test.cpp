#include "platform/linux/session/session_presence.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace vorrin {
namespace {

class SessionPresenceTest : public testing::Test {
 protected:
  SessionPresence presence_{{.resigned = [this] { told_ += presence_.isActive() ? '!' : 'r'; },
                             .activity = [this] { told_ += presence_.isActive() ? 'a' : 'i'; }}};

  /// What was told since the last call: resigned, inactive, active.
  std::string told() { return std::exchange(told_, {}); }

 private:
  std::string told_;
};

TEST_F(SessionPresenceTest, a_lock_and_another_session_resign_and_only_changes_are_told) {
  EXPECT_TRUE(presence_.isActive());
  presence_.setLocked("a", true);
  presence_.setLocked("a", true);
  presence_.setOnScreen(false);
  EXPECT_EQ(told(), "ri");
  presence_.setOnScreen(true);
  presence_.setLocked("a", false);
  presence_.setLocked("a", false);
  EXPECT_EQ(told(), "a");
  presence_.setOnScreen(false);
  EXPECT_EQ(told(), "ri");
}

TEST_F(SessionPresenceTest, everybody_who_said_locked_has_to_take_it_back) {
  presence_.setLocked("a", true);
  presence_.setLocked("b", true);
  presence_.setLocked("a", false);
  EXPECT_FALSE(presence_.isActive());
  presence_.setLocked("b", false);
  EXPECT_TRUE(presence_.isActive());
}

TEST_F(SessionPresenceTest, a_screen_saver_does_not_resign_until_it_locks) {
  presence_.setScreenSaver("a", true);
  EXPECT_EQ(told(), "i");
  presence_.setLocked("b", true);
  EXPECT_EQ(told(), "r");
  presence_.setScreenSaver("a", false);
  EXPECT_EQ(told(), "");
  presence_.setLocked("b", false);
  EXPECT_EQ(told(), "a");
}

TEST_F(SessionPresenceTest, a_user_seen_at_a_window_ends_all_but_a_lock_that_somebody_sees) {
  presence_.setOnScreen(false);
  presence_.setScreenSaver("a", true);
  presence_.userWasSeen();
  EXPECT_TRUE(presence_.isActive());
  presence_.setLocked("a", true);
  presence_.userWasSeen();
  EXPECT_FALSE(presence_.isActive());
}

}  // namespace
}  // namespace vorrin
