#include "input_helper/frame.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorrin::input_helper {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr InputEvent scanCode{EV_MSC, MSC_SCAN, 30};
constexpr InputEvent pressOfA{EV_KEY, KEY_A, pressed};
constexpr InputEvent movement{EV_REL, REL_X, 5};

Frame kept(const Frame& frame, std::initializer_list<std::size_t> places) {
  Frame kept;
  for (const auto place : places) keepEvent(frame, place, kept);
  return kept;
}

TEST(Frame, a_key_takes_its_scan_code_along) {
  EXPECT_THAT(kept({scanCode, pressOfA}, {0, 1}), ElementsAre(scanCode, pressOfA));
  EXPECT_THAT(kept({scanCode, pressOfA}, {1}), ElementsAre(scanCode, pressOfA));
}

TEST(Frame, a_scan_code_without_its_key_is_left_out) {
  EXPECT_THAT(kept({scanCode, pressOfA}, {0}), IsEmpty());
}

TEST(Frame, a_scan_code_that_belongs_to_no_key_stays) {
  EXPECT_THAT(kept({scanCode}, {0}), ElementsAre(scanCode));
  EXPECT_THAT(kept({scanCode, movement}, {0, 1}), ElementsAre(scanCode, movement));
}

TEST(Frame, a_key_without_a_scan_code_takes_nothing_along) {
  EXPECT_THAT(kept({movement, pressOfA}, {1}), ElementsAre(pressOfA));
}

TEST(Frame, the_difference_of_two_states_releases_first) {
  KeySet before;
  before.set(KEY_Z);
  before.set(KEY_TAB);
  KeySet after;
  after.set(KEY_TAB);
  after.set(KEY_A);
  EXPECT_THAT(difference(before, after),
              ElementsAre(InputEvent{EV_KEY, KEY_Z, released}, pressOfA));
  EXPECT_THAT(difference(after, after), IsEmpty());
}

TEST(Frame, a_repeat_leaves_the_key_down) {
  KeySet keys;
  followKeys(Frame{pressOfA, {EV_KEY, KEY_A, 2}, movement}, keys);
  EXPECT_TRUE(keys.test(KEY_A));
  followKeys(Frame{{EV_KEY, KEY_A, released}}, keys);
  EXPECT_TRUE(keys.none());
}

TEST(Frame, a_key_that_no_set_has_a_place_for_is_none) {
  EXPECT_FALSE(isKey({EV_KEY, KEY_CNT, pressed}));
  EXPECT_TRUE(isKey({EV_KEY, KEY_MAX, pressed}));
}

}  // namespace
}  // namespace vorrin::input_helper
