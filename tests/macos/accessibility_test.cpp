#include "platform/accessibility.h"

#include <gmock/gmock.h>

#include "quartz_stand_in.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

TEST(MacosAccessibility, the_quiet_question_never_prompts) {
  QuartzStandIn quartz;
  EXPECT_TRUE(isProcessTrusted());
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrusted());
  EXPECT_THAT(quartz.calls, ElementsAre("AXIsProcessTrusted()", "AXIsProcessTrusted()"));
}

TEST(MacosAccessibility, the_prompting_question_has_the_prompt_option_alone) {
  QuartzStandIn quartz;
  EXPECT_TRUE(isProcessTrustedWithPrompt());
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrustedWithPrompt());
  const auto* const call = "AXIsProcessTrustedWithOptions(kAXTrustedCheckOptionPrompt: true, 1)";
  EXPECT_THAT(quartz.calls, ElementsAre(call, call));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

}  // namespace
}  // namespace vorrin
