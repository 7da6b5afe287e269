#include "platform/event_post.h"

#include <gmock/gmock.h>

#include <array>

#include "quartz_stand_in.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

constexpr std::array<SyntheticEvent, 2> click{
    {{.type = EventType::leftMouseDown, .location = {12.5, 34}, .keyCode = 0, .userData = 77},
     {.type = EventType::leftMouseUp, .location = {12.5, 34}, .keyCode = 0, .userData = 77}}};
constexpr std::array<SyntheticEvent, 2> keyPress{
    {{.type = EventType::keyDown, .location = {}, .keyCode = 29, .userData = 77},
     {.type = EventType::keyUp, .location = {}, .keyCode = 29, .userData = 77}}};

TEST(MacosEventPost, the_pointer_is_where_a_throw_away_event_is) {
  QuartzStandIn quartz;
  quartz.pointer = {640.25, -3};
  const auto location = pointerLocation();
  if (!location) FAIL() << "the pointer is nowhere";
  EXPECT_EQ(location->x, 640.25);
  EXPECT_EQ(location->y, -3);
  EXPECT_THAT(quartz.calls, ElementsAre("CGEventCreate(null)", "CGEventGetLocation(event)"));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST(MacosEventPost, without_a_throw_away_event_the_pointer_is_nowhere) {
  QuartzStandIn quartz;
  quartz.refusedEvents = {0};
  EXPECT_FALSE(pointerLocation());
  EXPECT_THAT(quartz.calls, ElementsAre("CGEventCreate(null)"));
}

TEST(MacosEventPost, a_click_is_made_whole_then_tagged_and_posted_event_by_event) {
  QuartzStandIn quartz;
  postEvents(click);
  EXPECT_THAT(quartz.calls,
              ElementsAre("CGEventCreateMouseEvent(null, 1, 12.5 34, 0)",
                          "CGEventCreateMouseEvent(null, 2, 12.5 34, 0)",
                          "CGEventSetIntegerValueField(event, 42, 77)", "CGEventPost(0, event)",
                          "CGEventSetIntegerValueField(event, 42, 77)", "CGEventPost(0, event)"));
}

TEST(MacosEventPost, a_key_press_is_made_of_its_key_code_down_then_up) {
  QuartzStandIn quartz;
  postEvents(keyPress);
  EXPECT_THAT(quartz.calls,
              ElementsAre("CGEventCreateKeyboardEvent(null, 29, true)",
                          "CGEventCreateKeyboardEvent(null, 29, false)",
                          "CGEventSetIntegerValueField(event, 42, 77)", "CGEventPost(0, event)",
                          "CGEventSetIntegerValueField(event, 42, 77)", "CGEventPost(0, event)"));
}

TEST(MacosEventPost, events_are_posted_in_their_order) {
  QuartzStandIn quartz;
  postEvents(keyPress);
  ASSERT_EQ(quartz.posted.size(), 2U);
  EXPECT_EQ(quartz.posted[0].type, 10U);
  EXPECT_EQ(quartz.posted[1].type, 11U);
}

TEST(MacosEventPost, an_event_that_cannot_be_made_is_left_out) {
  QuartzStandIn quartz;
  quartz.refusedEvents = {10};
  postEvents(keyPress);
  ASSERT_EQ(quartz.posted.size(), 1U);
  EXPECT_EQ(quartz.posted[0].type, 11U);
  EXPECT_EQ(quartz.posted[0].userData, 77);
}

TEST(MacosEventPost, longer_batches_are_posted_whole) {
  QuartzStandIn quartz;
  const std::array<SyntheticEvent, 3> events{click[0], click[1], keyPress[0]};
  postEvents(events);
  ASSERT_EQ(quartz.posted.size(), 3U);
  EXPECT_EQ(quartz.posted[2].type, 10U);
}

TEST(MacosEventPost, no_event_outlives_its_posting) {
  QuartzStandIn quartz;
  postEvents(click);
  postEvents(keyPress);
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST(MacosEventPost, notices_of_the_system_are_never_posted) {
  QuartzStandIn quartz;
  postEvents(
      std::array<SyntheticEvent, 1>{SyntheticEvent{EventType::tapDisabledByTimeout, {}, 0, 0}});
  EXPECT_TRUE(quartz.calls.empty());
}

}  // namespace
}  // namespace vorrin
