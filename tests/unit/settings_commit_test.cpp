#include <gtest/gtest.h>

#include "platform/fake/defaults/fake_defaults.h"
#include "settings/settings_persistence.h"
#include "support/presets.h"

namespace vorrin {
namespace {

class SettingsCommitTest : public testing::Test {
 protected:
  SettingsCommitTest() { fake::resetStorage(); }
  ~SettingsCommitTest() override { fake::resetStorage(); }

  const UserDefaults defaults = UserDefaults::standard();
};

TEST_F(SettingsCommitTest, all_settings_are_stored_in_one_commit_macro_by_macro) {
  EXPECT_FALSE(storeCurrentSettings(defaults, {{0.12, 0.003}, {97, 98}, 4, {false, true}}));
  ASSERT_EQ(fake::storage().commits.size(), 1U);
  EXPECT_EQ(fake::storage().commits[0], (fake::Commit{{"interval0", 0.12},
                                                      {"key0", std::int64_t{97}},
                                                      {"enabled0", false},
                                                      {"interval1", 0.003},
                                                      {"key1", std::int64_t{98}},
                                                      {"enabled1", true},
                                                      {"digit", std::int64_t{4}}}));
}

TEST_F(SettingsCommitTest, loading_commits_nothing) {
  static_cast<void>(loadCurrentSettings(defaults));
  EXPECT_TRUE(fake::storage().commits.empty());
}

TEST_F(SettingsCommitTest, a_storage_that_cannot_be_read_is_no_empty_one) {
  EXPECT_FALSE(storeCurrentSettings(defaults, test::otherPreset()));
  fake::storage().readFailure = "broken";
  const auto [settings, failure] = loadCurrentSettings(defaults);
  EXPECT_EQ(failure, "broken");
  EXPECT_EQ(settings, test::startPreset());
}

TEST_F(SettingsCommitTest, what_cannot_be_stored_is_told_with_the_reason) {
  fake::storage().writeFailure = "full";
  EXPECT_EQ(storeCurrentSettings(defaults, test::otherPreset()), "full");
}

}  // namespace
}  // namespace vorrin
