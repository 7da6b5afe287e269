#include <gtest/gtest.h>

#include "platform/fake/defaults/fake_defaults.h"
#include "settings/preset_store.h"
#include "settings/settings_persistence.h"
#include "support/presets.h"

// Presets and current settings on a storage that fails, or tells what it was asked.

namespace vorrin {
namespace {

using test::otherPreset;
using test::startPreset;

class StorageFailureTest : public testing::Test {
 protected:
  StorageFailureTest() {
    EXPECT_TRUE(store.save(startPreset(), "Work"));
    fake::storage().commits.clear();
  }
  ~StorageFailureTest() override { fake::resetStorage(); }

  void expectEveryChangeRefused() const {
    EXPECT_FALSE(store.save(otherPreset(), "Night"));
    EXPECT_FALSE(store.save(otherPreset(), "Work"));
    EXPECT_FALSE(store.rename("Work", "Home"));
    EXPECT_FALSE(store.remove("Work"));
  }

  const UserDefaults defaults = UserDefaults::standard();
  const PresetStore store{defaults};
};

TEST_F(StorageFailureTest, what_is_not_kept_or_cannot_be_written_is_a_failure) {
  fake::storage().losesWrites = true;
  expectEveryChangeRefused();
  EXPECT_TRUE(store.save(startPreset(), "Work")) << "what stands there already";
  fake::storage().losesWrites = false;
  fake::storage().writeFailure = "full";
  expectEveryChangeRefused();
  EXPECT_EQ(storeCurrentSettings(defaults, otherPreset()), "full");
  EXPECT_EQ(store.all().value.at("Work"), startPreset());
}

TEST_F(StorageFailureTest, a_storage_that_cannot_be_read_is_no_empty_one_and_nothing_is_written) {
  EXPECT_FALSE(storeCurrentSettings(defaults, otherPreset()));
  fake::storage().commits.clear();
  fake::storage().readFailure = "broken";
  EXPECT_EQ(store.all().failure, "broken");
  expectEveryChangeRefused();
  const auto [settings, failure] = loadCurrentSettings(defaults);
  EXPECT_EQ(failure, "broken");
  EXPECT_EQ(settings, startPreset());
  EXPECT_TRUE(fake::storage().commits.empty());
  fake::storage().readFailure.reset();
  EXPECT_EQ(store.all().value.at("Work"), startPreset());
}

TEST_F(StorageFailureTest, all_settings_are_stored_in_one_commit_with_their_types) {
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

}  // namespace
}  // namespace vorrin
