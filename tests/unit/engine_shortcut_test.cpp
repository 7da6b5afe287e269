#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "support/engine_test.h"
#include "support/keys.h"

namespace vorrin {
namespace {

class ShortcutTest : public test::EngineTest {
 protected:
  bool press(std::uint16_t key) { return macros.handle(key, true, false, false); }
  bool release(std::uint16_t key) { return macros.handle(key, false, false, false); }

  /// Plays a press (+), an autorepeat (r), a press with a modifier (m) or a release (-) of each
  /// key; an s for each that is swallowed and a p for each that passes.
  std::string play(const std::string& moves) {
    std::string verdicts;
    std::istringstream words(moves);
    for (std::string word; words >> word;) {
      const std::uint16_t key = word[1] == '`'   ? backtick
                                : word[1] == 'T' ? tab
                                : word[1] == 'E' ? escapeKey
                                                 : std::uint16_t{0};
      const bool swallowed = macros.handle(key, word[0] != '-', word[0] == 'r', word[0] == 'm');
      verdicts += swallowed ? 's' : 'p';
    }
    return verdicts;
  }
};

struct Scenario {
  const char* what;
  const char* moves;
  const char* verdicts;
  PerMacro<bool> running;
};

const Scenario scenarios[] = {
    {"a press starts its own macro and the next one stops it",
     "+` -` +T +`",
     "ssss",
     {false, true}},
    {"only the first press before a release toggles", "+` r` +`", "sss", {true, false}},
    {"the press after a release toggles again", "+` -` +`", "sss", {false, false}},
    {"an autorepeat of a key not held toggles nothing", "r` -`", "sp", {false, false}},
    {"a release without a press passes", "-T +T -T -T", "pssp", {false, true}},
    {"Escape stops all and passes; held keys stay held", "+` +T +E -E -T", "sspps", {false, false}},
    {"Escape counts with a modifier too", "+T mE", "sp", {false, false}},
    {"Escape counts repeated too", "+T rE", "sp", {false, false}},
    {"a shortcut with a modifier passes", "m` -`", "pp", {false, false}},
    {"a modifier leaves a held key alone", "+` m` -`", "sps", {true, false}},
    {"other keys pass", "+a ra -a", "ppp", {false, false}},
};

TEST_F(ShortcutTest, keys_are_swallowed_and_macros_toggled_as_in_these_scenarios) {
  for (const auto& [what, moves, verdicts, running] : scenarios) {
    macros.stopAll();
    macros.held.clear();
    EXPECT_EQ(play(moves), verdicts) << what;
    EXPECT_EQ(macros.running, running) << what;
  }
}

TEST_F(ShortcutTest, escape_is_never_a_shortcut) {
  macros.keys = {escapeKey, tab};
  EXPECT_EQ(play("+E -E"), "pp");
  EXPECT_FALSE(macros.running[0]);
}

TEST_F(ShortcutTest, the_shortcut_of_a_disabled_macro_passes_and_toggles_nothing) {
  macros.enabled[1] = false;
  EXPECT_EQ(play("+T -T"), "pp");
  EXPECT_FALSE(macros.running[1]);
}

TEST_F(ShortcutTest, a_press_is_swallowed_and_held_also_when_the_start_is_not_permitted) {
  permission = false;
  EXPECT_EQ(play("+` r` -`"), "sss");
  EXPECT_FALSE(macros.running[0]);
}

TEST_F(ShortcutTest, a_release_counts_whatever_has_changed_since_the_press) {
  press(backtick);
  macros.keys = {tab, 97};
  macros.enabled = {false, false};
  EXPECT_TRUE(macros.handle(backtick, false, true, true));
  EXPECT_FALSE(release(backtick));
}

}  // namespace
}  // namespace vorrin
