#include <gmock/gmock.h>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "fresh_trust.h"
#include "platform/event_post.h"

// The macros' actions from the engine to Quartz.

namespace vorrin {
namespace {

using testing::ElementsAre;

class MacosSynthesis : public testing::Test {
 protected:
  MacosSynthesis() { forgetTrust(quartz); }
  ~MacosSynthesis() override { engine.stopAll(); }

  QuartzStandIn quartz;
};

TEST_F(MacosSynthesis, the_keyboard_macro_makes_these_calls) {
  emitMacro(0, {});
  EXPECT_THAT(
      quartz.calls,
      ElementsAre("AXIsProcessTrusted()", "CGEventCreateKeyboardEvent(null, 18, true)",
                  "CGEventCreateKeyboardEvent(null, 18, false)",
                  "CGEventSetIntegerValueField(event, 42, 1448235598)", "CGEventPost(0, event)",
                  "CGEventSetIntegerValueField(event, 42, 1448235598)", "CGEventPost(0, event)"));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST_F(MacosSynthesis, the_mouse_macro_makes_these_calls) {
  quartz.pointer = {300, 200.5};
  emitMacro(1, {});
  EXPECT_THAT(
      quartz.calls,
      ElementsAre("AXIsProcessTrusted()", "CGEventCreate(null)", "CGEventGetLocation(event)",
                  "CGEventCreateMouseEvent(null, 1, 300 200.5, 0)",
                  "CGEventCreateMouseEvent(null, 2, 300 200.5, 0)",
                  "CGEventSetIntegerValueField(event, 42, 1448235598)", "CGEventPost(0, event)",
                  "CGEventSetIntegerValueField(event, 42, 1448235598)", "CGEventPost(0, event)"));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST_F(MacosSynthesis, without_a_throw_away_event_the_pointer_is_nowhere) {
  quartz.refusedEvents = {0};
  EXPECT_FALSE(pointerLocation());
  EXPECT_THAT(quartz.calls, ElementsAre("CGEventCreate(null)"));
}

TEST_F(MacosSynthesis, an_event_that_cannot_be_made_is_left_out) {
  quartz.refusedEvents = {10};
  emitMacro(0, {});
  ASSERT_EQ(quartz.posted.size(), 1U);
  EXPECT_EQ(quartz.posted[0].type, 11U);
  EXPECT_EQ(quartz.posted[0].userData, marker);
}

}  // namespace
}  // namespace vorrin
