#include <gtest/gtest.h>

#include "platform/fake/defaults/fake_defaults.h"
#include "settings/preset_json.h"
#include "settings/preset_store.h"
#include "support/presets.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::startPreset;

class FailingStorage : public testing::Test {
 protected:
  FailingStorage() {
    EXPECT_TRUE(store.save(startPreset(), "Work"));
    fake::storage().commits.clear();
  }
  ~FailingStorage() override { fake::resetStorage(); }

  const PresetStore store{UserDefaults::standard()};
};

TEST_F(FailingStorage, a_save_that_is_not_kept_is_a_failure) {
  fake::storage().losesWrites = true;
  EXPECT_FALSE(store.save(otherPreset(), "Night"));
  EXPECT_FALSE(store.save(otherPreset(), "Work"));
  EXPECT_EQ(fake::storage().commits.size(), 2U);
  EXPECT_EQ(store.all().value.at("Work"), startPreset());
}

TEST_F(FailingStorage, saving_what_stands_there_already_is_no_failure) {
  fake::storage().losesWrites = true;
  EXPECT_TRUE(store.save(startPreset(), "Work"));
}

TEST_F(FailingStorage, a_renaming_that_is_not_kept_is_a_failure) {
  fake::storage().losesWrites = true;
  EXPECT_FALSE(store.rename("Work", "Home"));
  EXPECT_TRUE(store.all().value.contains("Work"));
}

TEST_F(FailingStorage, a_deletion_that_is_not_kept_is_a_failure) {
  fake::storage().losesWrites = true;
  EXPECT_FALSE(store.remove("Work"));
  EXPECT_TRUE(store.all().value.contains("Work"));
}

TEST_F(FailingStorage, nothing_is_written_while_it_cannot_be_read) {
  fake::storage().readFailure = "broken";
  EXPECT_EQ(store.all().failure, "broken");
  EXPECT_FALSE(store.save(otherPreset(), "Night"));
  EXPECT_FALSE(store.rename("Work", "Home"));
  EXPECT_FALSE(store.remove("Work"));
  EXPECT_TRUE(fake::storage().commits.empty());
  fake::storage().readFailure.reset();
  EXPECT_EQ(store.all().value.at("Work"), startPreset());
}

TEST_F(FailingStorage, what_cannot_be_written_is_a_failure) {
  fake::storage().writeFailure = "full";
  EXPECT_FALSE(store.save(startPreset(), "Work"));
  EXPECT_FALSE(store.rename("Work", "Home"));
  EXPECT_FALSE(store.remove("Work"));
}

TEST_F(FailingStorage, whatever_is_refused_writes_nothing) {
  EXPECT_TRUE(store.save(startPreset(), "Home"));
  fake::storage().commits.clear();
  EXPECT_FALSE(store.save(startPreset(), " "));
  EXPECT_FALSE(store.save(startPreset(), std::string(81, 'x')));
  EXPECT_FALSE(store.save(Preset{}, "Night"));
  EXPECT_FALSE(store.rename("Work", "Home"));
  EXPECT_FALSE(store.rename("Work", " "));
  EXPECT_FALSE(store.rename("Night", "Day"));
  EXPECT_FALSE(store.remove("Night"));
  EXPECT_TRUE(fake::storage().commits.empty());
}

TEST_F(FailingStorage, a_name_that_is_not_utf_8_writes_nothing) {
  // Whatever trimming makes of such a name, it is either stored as readable text or refused.
  const bool saved = store.save(startPreset(), "caf\xE9");
  EXPECT_EQ(fake::storage().commits.size(), saved ? 1U : 0U);
  EXPECT_EQ(store.all().value.size(), saved ? 2U : 1U);
}

TEST_F(FailingStorage, every_success_is_one_commit_of_one_entry) {
  EXPECT_TRUE(store.save(otherPreset(), "Night"));
  EXPECT_TRUE(store.rename("Night", "Day"));
  EXPECT_TRUE(store.remove("Day"));
  ASSERT_EQ(fake::storage().commits.size(), 3U);
  for (const auto& commit : fake::storage().commits) {
    ASSERT_EQ(commit.size(), 1U);
    EXPECT_EQ(commit[0].first, "namedPresets");
    EXPECT_TRUE(std::holds_alternative<Data>(commit[0].second));
  }
}

}  // namespace
}  // namespace vorrin
