#include "platform/accessibility.h"

#include <gmock/gmock.h>

#include "fresh_trust.h"
#include "platform/macos/input/trust.h"

namespace vorrin {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::Not;

const auto* const quietQuestion = "AXIsProcessTrusted()";
const auto* const question = "AXIsProcessTrustedWithOptions(kAXTrustedCheckOptionPrompt: true, 1)";
const auto* const probe = "CGEventTapCreate(1, 1, 0, 1024, callback, null)";

class MacosAccessibility : public testing::Test {
 protected:
  MacosAccessibility() { forgetTrust(quartz); }

  /// The list of granted programs is edited, while the program watches it.
  void editGrants() {
    watchGrants();
    quartz.notify("com.apple.accessibility.api");
  }

  QuartzStandIn quartz;
};

TEST_F(MacosAccessibility, the_quiet_question_never_prompts_nor_makes_a_tap) {
  EXPECT_TRUE(isProcessTrusted());
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrusted());
  EXPECT_THAT(quartz.calls, ElementsAre(quietQuestion, quietQuestion));
}

TEST_F(MacosAccessibility, the_prompting_question_has_the_prompt_option_alone) {
  EXPECT_TRUE(isProcessTrustedWithPrompt());
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrustedWithPrompt());
  EXPECT_THAT(quartz.calls, ElementsAre(question, question));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST_F(MacosAccessibility, trust_is_confirmed_by_a_filter_at_the_tail_that_is_taken_away_at_once) {
  EXPECT_TRUE(confirmTrust());
  EXPECT_THAT(quartz.calls,
              ElementsAre(probe, "CFMachPortInvalidate(probe)", "systemsOwnCallback(probe)"));
  EXPECT_EQ(quartz.liveObjects(), 0U);
}

TEST_F(MacosAccessibility, what_a_tap_showed_counts_until_the_system_changes_its_answer) {
  quartz.refusesTaps = true;
  EXPECT_FALSE(confirmTrust());
  EXPECT_FALSE(isProcessTrusted());
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrusted());
  quartz.trusted = true;
  EXPECT_TRUE(isProcessTrusted());
}

TEST_F(MacosAccessibility, an_edited_list_is_looked_at_by_a_tap_twice_a_second_apart) {
  editGrants();
  for (const int looks : {1, 1, 2, 2}) {
    isProcessTrusted();
    isProcessTrusted();
    EXPECT_EQ(std::count(quartz.calls.begin(), quartz.calls.end(), probe), looks);
    quartz.now += 0.6;
  }
}

TEST_F(MacosAccessibility, a_grant_that_was_deleted_is_missed_whatever_the_system_says) {
  editGrants();
  quartz.refusesTaps = true;
  EXPECT_FALSE(isProcessTrusted());
  quartz.refusesTaps = false;
  quartz.now += 1;
  EXPECT_TRUE(isProcessTrusted());
}

TEST_F(MacosAccessibility, a_grant_that_the_system_does_not_know_of_is_found_and_not_asked_for) {
  quartz.trusted = false;
  EXPECT_FALSE(isProcessTrusted());
  editGrants();
  EXPECT_TRUE(isProcessTrusted());
  EXPECT_TRUE(isProcessTrustedWithPrompt());
  EXPECT_THAT(quartz.calls, Not(Contains(question)));
}

TEST_F(MacosAccessibility, the_prompting_question_looks_again_where_a_tap_was_refused) {
  quartz.refusesTaps = true;
  confirmTrust();
  EXPECT_FALSE(isProcessTrustedWithPrompt());
  quartz.refusesTaps = false;
  EXPECT_TRUE(isProcessTrustedWithPrompt());
}

}  // namespace
}  // namespace vorrin
