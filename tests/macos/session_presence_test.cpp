#include "platform/macos/session/session_presence.h"

#include <gmock/gmock.h>

#include <vector>

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MacosSessionPresence : public testing::Test {
 protected:
  std::vector<bool> told;
  SessionPresence presence{[this](bool isActive) { told.push_back(isActive); }};
};

TEST_F(MacosSessionPresence, the_user_is_at_the_session_until_something_else_is_told) {
  EXPECT_TRUE(presence.isActive());
  presence.setOnScreen(true);
  presence.setLocked(false);
  EXPECT_THAT(told, IsEmpty());
}

TEST_F(MacosSessionPresence, a_locked_screen_counts_as_left) {
  presence.setLocked(true);
  EXPECT_FALSE(presence.isActive());
  presence.setLocked(false);
  EXPECT_TRUE(presence.isActive());
  EXPECT_THAT(told, ElementsAre(false, true));
}

TEST_F(MacosSessionPresence, a_session_switched_away_counts_as_left) {
  presence.setOnScreen(false);
  presence.setOnScreen(true);
  EXPECT_THAT(told, ElementsAre(false, true));
}

TEST_F(MacosSessionPresence, a_session_that_is_back_on_the_screen_but_locked_is_still_left) {
  presence.setLocked(true);
  presence.setOnScreen(false);
  presence.setOnScreen(true);
  EXPECT_FALSE(presence.isActive());
  EXPECT_THAT(told, ElementsAre(false));
}

TEST_F(MacosSessionPresence, what_is_told_twice_is_passed_on_once) {
  presence.setLocked(true);
  presence.setLocked(true);
  presence.setLocked(false);
  presence.setLocked(false);
  EXPECT_THAT(told, ElementsAre(false, true));
}

}  // namespace
}  // namespace vorrin
