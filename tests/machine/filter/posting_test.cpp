#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <algorithm>
#include <csignal>
#include <string>
#include <vector>

#include "filter_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;

TEST_F(StartedHelper, posted_digits_and_clicks_come_from_devices_of_their_own) {
  helper->post(KEY_0);
  helper->post(0);
  ASSERT_TRUE(untilSeen(up(BTN_LEFT)));
  EXPECT_THAT(watch.keys(), ElementsAre(down(KEY_0), up(KEY_0), down(BTN_LEFT), up(BTN_LEFT)));
  EXPECT_EQ(watch.seen().front().device, "Vorrin keyboard");
  EXPECT_EQ(watch.seen().back().device, "Vorrin pointer");
  EXPECT_EQ(watch.seen().back().place, ownPlace);
}

TEST_F(StartedHelper, every_digit_can_be_posted) {
  std::vector<std::string> expected;
  for (std::uint16_t key = KEY_1; key <= KEY_0; ++key) {
    helper->post(key);
    expected.insert(expected.end(), {down(key), up(key)});
  }
  ASSERT_TRUE(untilSeen(up(KEY_0)));
  EXPECT_EQ(watch.keys(), expected);
}

TEST_F(StartedHelper, the_press_and_the_release_of_a_click_are_two_frames) {
  helper->post(0);
  ASSERT_TRUE(untilSeen(up(BTN_LEFT)));
  std::vector<int> types;
  for (const auto& event : watch.seen()) types.push_back(event.type);
  EXPECT_THAT(types, ElementsAre(EV_KEY, EV_SYN, EV_KEY, EV_SYN));
}

TEST_F(StartedHelper, a_click_left_down_is_released_at_the_end) {
  helper->say(Post{1, {{{0, true}}}});
  ASSERT_TRUE(untilSeen(down(BTN_LEFT)));
  helper->hangUp();
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_TRUE(untilSeen(up(BTN_LEFT)));
}

TEST_F(StartedHelper, a_thousand_posted_clicks_all_arrive) {
  // The kernel keeps 64 events for a reader that is behind, so this one never is by much.
  constexpr std::size_t ahead = 8;
  for (std::size_t click = 0; click < 1000; ++click) {
    helper->post(0);
    // A key and the end of its frame, for the press and for the release.
    const auto due = click < ahead ? 0 : 4 * (click - ahead);
    ASSERT_TRUE(until([&] { return watch.seen().size() >= due; }));
  }
  EXPECT_TRUE(until([this] { return watch.seen().size() == 4000; }));
  EXPECT_EQ(std::ranges::count(watch.keys(), down(BTN_LEFT)), 1000);
}

TEST_F(StartedHelper, a_click_left_down_is_released_when_the_helper_is_killed) {
  helper->say(Post{1, {{{0, true}}}});
  ASSERT_TRUE(untilSeen(down(BTN_LEFT)));
  ::kill(helper->workingPart(), SIGKILL);
  EXPECT_TRUE(untilSeen(up(BTN_LEFT)));
}

}  // namespace
}  // namespace vorrin::machine
