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
  storeCurrentSettings(defaults, {{0.12, 0.003}, {97, 98}, 4, {false, true}});
  ASSERT_EQ(fake::storage().commits.size(), 1U);
  EXPECT_EQ(fake::storage().commits[0], (fake::Commit{{"interval0", 0.12},
                                                      {"key0", std::int64_t{97}},
                                                      {"enabled0", false},
                                                      {"interval1", 0.003},
                                                      {"key1", std::int64_t{98}},
                                                      {"enabled1", true},
                                                      {"digit", std::int64_t{4}}}));
}

TEST_F(SettingsCommitTest, one_enabled_flag_is_a_commit_of_its_own) {
  storeEnabled(defaults, 1, false);
  ASSERT_EQ(fake::storage().commits.size(), 1U);
  EXPECT_EQ(fake::storage().commits[0], (fake::Commit{{"enabled1", false}}));
}

TEST_F(SettingsCommitTest, loading_commits_nothing) {
  static_cast<void>(loadCurrentSettings(defaults));
  EXPECT_TRUE(fake::storage().commits.empty());
}

}  // namespace
}  // namespace vorrin
