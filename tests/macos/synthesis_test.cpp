#include <gmock/gmock.h>

#include "bridge/event_synthesis.h"
#include "bridge/program_engine.h"
#include "fresh_trust.h"
#include "program_activity.h"

// The macros' actions from the engine to Quartz.

namespace vorrin {
namespace {

using testing::ElementsAre;

class MacosSynthesis : public testing::Test {
 protected:
  MacosSynthesis() {
    forgetTrust(quartz);
    setProgramActive(false);
    setSessionActive(true);
  }
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

}  // namespace
}  // namespace vorrin
