#include "platform/event_post.h"

#include <gmock/gmock.h>

#include <array>

#include "quartz_stand_in.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

constexpr std::array<SyntheticEvent, 2> keyPress{
    {{.type = EventType::keyDown, .location = {}, .keyCode = 29, .userData = 77},
     {.type = EventType::keyUp, .location = {}, .keyCode = 29, .userData = 77}}};

TEST(MacosEventPost, without_a_throw_away_event_the_pointer_is_nowhere) {
  QuartzStandIn quartz;
  quartz.refusedEvents = {0};
  EXPECT_FALSE(pointerLocation());
  EXPECT_THAT(quartz.calls, ElementsAre("CGEventCreate(null)"));
}

TEST(MacosEventPost, an_event_that_cannot_be_made_is_left_out) {
  QuartzStandIn quartz;
  quartz.refusedEvents = {10};
  postEvents(keyPress);
  ASSERT_EQ(quartz.posted.size(), 1U);
  EXPECT_EQ(quartz.posted[0].type, 11U);
  EXPECT_EQ(quartz.posted[0].userData, 77);
}

TEST(MacosEventPost, notices_of_the_system_are_never_posted) {
  QuartzStandIn quartz;
  postEvents(
      std::array<SyntheticEvent, 1>{SyntheticEvent{EventType::tapDisabledByTimeout, {}, 0, 0}});
  EXPECT_TRUE(quartz.calls.empty());
}

}  // namespace
}  // namespace vorrin
