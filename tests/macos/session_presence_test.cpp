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

TEST_F(MacosSessionPresence, a_locked_screen_or_a_session_switched_away_counts_as_left_once) {
  EXPECT_TRUE(presence.isActive());
  presence.setOnScreen(true);
  presence.setLocked(false);
  EXPECT_THAT(told, IsEmpty());
  for (const bool locked : {true, true, false, false}) presence.setLocked(locked);
  EXPECT_THAT(told, ElementsAre(false, true));
  presence.setOnScreen(false);
  presence.setOnScreen(true);
  EXPECT_THAT(told, ElementsAre(false, true, false, true));
}

TEST_F(MacosSessionPresence, a_session_that_is_back_on_the_screen_but_locked_is_still_left) {
  presence.setLocked(true);
  presence.setOnScreen(false);
  presence.setOnScreen(true);
  EXPECT_FALSE(presence.isActive());
  EXPECT_THAT(told, ElementsAre(false));
}

}  // namespace
}  // namespace vorrin
