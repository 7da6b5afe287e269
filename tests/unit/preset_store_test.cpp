#include "settings/preset_store.h"

#include <gtest/gtest.h>

#include <string>
#include <variant>

#include "settings/preset_json.h"
#include "support/presets.h"
#include "support/storage_test.h"

namespace vorrin {
namespace {

using test::otherPreset;
using test::presetText;
using test::startPreset;
using Presets = std::map<std::string, Preset>;

class PresetStoreTest : public test::StorageTest {
 protected:
  void putJson(std::string json) const { put("namedPresets", Data{std::move(json)}); }

  /// The stored entry as it stands; empty when there is none.
  [[nodiscard]] std::string storedJson() const {
    const auto object = reopened().object("namedPresets").value;
    return object ? std::get<Data>(*object).bytes : "";
  }

  [[nodiscard]] Presets storedPresets() const { return decodePresets(storedJson()).value(); }

  const PresetStore store{defaults};
};

std::string startText() {
  return std::string(test::startJson);
}

TEST_F(PresetStoreTest, lists_what_any_store_on_the_domain_has_saved) {
  const PresetStore second{reopened()};
  EXPECT_TRUE(store.all().value.empty());
  EXPECT_TRUE(store.save(startPreset(), "  Work  "));
  EXPECT_TRUE(second.save(otherPreset(), "work"));
  const Presets expected{{"Work", startPreset()}, {"work", otherPreset()}};
  EXPECT_EQ(store.all().value, expected);
  EXPECT_EQ(second.all().value, expected);
  EXPECT_EQ(storedPresets(), expected);
}

TEST_F(PresetStoreTest, what_is_refused_changes_nothing) {
  EXPECT_TRUE(store.save(startPreset(), "Work"));
  EXPECT_TRUE(store.save(otherPreset(), "Home"));
  const std::string before = storedJson();
  for (const char* taken : {"Home", " Home ", "", "   "}) {
    EXPECT_FALSE(store.rename("Work", taken)) << taken;
  }
  EXPECT_FALSE(store.rename("Work", std::string(81, 'a')));
  EXPECT_FALSE(store.save(startPreset(), std::string(81, 'a')));
  EXPECT_FALSE(store.save(startPreset(), " \n"));
  EXPECT_FALSE(store.rename(" Work", "Day"));
  EXPECT_FALSE(store.remove("Work "));
  EXPECT_FALSE(store.rename("Day", "Day"));
  Preset slow = startPreset();
  slow.intervals[0] = 5000;
  EXPECT_FALSE(store.save(slow, "Work"));
  EXPECT_FALSE(store.save(Preset{}, "Other"));
  EXPECT_EQ(storedJson(), before);
}

TEST_F(PresetStoreTest, a_stored_name_with_blanks_around_it_can_be_renamed_and_deleted) {
  putJson("{\" a \":" + startText() + ",\" b \":" + startText() + "}");
  EXPECT_TRUE(store.rename(" a ", " a "));
  EXPECT_TRUE(store.remove(" b "));
  EXPECT_EQ(store.all().value, (Presets{{"a", startPreset()}}));
}

TEST_F(PresetStoreTest,
       saving_again_replaces_a_preset_and_deleting_the_last_leaves_an_empty_object) {
  EXPECT_TRUE(store.save(startPreset(), "Work"));
  EXPECT_TRUE(store.save(otherPreset(), " Work"));
  EXPECT_EQ(store.all().value, (Presets{{"Work", otherPreset()}}));
  EXPECT_TRUE(store.remove("Work"));
  EXPECT_EQ(storedJson(), "{}");
  EXPECT_TRUE(store.all().value.empty());
}

TEST_F(PresetStoreTest, an_entry_that_is_not_data_lists_nothing_and_is_replaced_by_the_next_save) {
  for (const DefaultsObject& other : {DefaultsObject{startText()}, DefaultsObject{true},
                                      DefaultsObject{std::int64_t{1}}, DefaultsObject{0.5}}) {
    put("namedPresets", other);
    EXPECT_TRUE(store.all().value.empty());
    EXPECT_FALSE(store.remove("Work"));
    EXPECT_TRUE(store.save(startPreset(), "Work"));
    EXPECT_EQ(storedPresets(), (Presets{{"Work", startPreset()}}));
  }
}

TEST_F(PresetStoreTest, an_entry_that_cannot_be_decoded_lists_nothing_and_stays_until_a_save) {
  for (const std::string& json :
       {std::string(), std::string("not JSON"), std::string("[]"), std::string("{\"a\":"),
        "{\"a\":" + startText() + ",\"b\":{}}", "{\"a\xFF\":" + startText() + "}",
        "{\"a\":" + presetText("keys", "[50,65536]") + "}", std::string(1000, '\0'),
        std::string(10'000, '[')}) {
    putJson(json);
    EXPECT_TRUE(store.all().value.empty());
    EXPECT_FALSE(store.rename("a", "b"));
    EXPECT_FALSE(store.remove("a"));
    EXPECT_EQ(storedJson(), json);
    EXPECT_TRUE(store.save(otherPreset(), "New"));
    EXPECT_EQ(storedPresets(), (Presets{{"New", otherPreset()}}));
  }
}

TEST_F(PresetStoreTest, an_entry_without_a_name_is_not_listed_and_goes_with_the_next_write) {
  putJson("{\"\":" + startText() + ",\"a\":" + startText() + "}");
  EXPECT_EQ(store.all().value.size(), 1U);
  EXPECT_TRUE(store.save(otherPreset(), "b"));
  EXPECT_FALSE(storedPresets().contains(""));
  EXPECT_EQ(storedPresets().size(), 2U);
}

TEST_F(PresetStoreTest, a_preset_that_is_not_valid_is_not_listed_and_goes_with_the_next_write) {
  Preset stopped = startPreset();
  stopped.intervals[0] = 0;
  const Presets stored{{"bad", stopped}, {"good", startPreset()}};
  putJson(encodePresets(stored).value());
  EXPECT_EQ(store.all().value, (Presets{{"good", startPreset()}}));
  EXPECT_FALSE(store.rename("bad", "better"));
  EXPECT_FALSE(store.remove("bad"));
  EXPECT_EQ(storedPresets(), stored);
  EXPECT_TRUE(store.rename("good", "bad"));
  EXPECT_EQ(storedPresets(), (Presets{{"bad", startPreset()}}));
}

}  // namespace
}  // namespace vorrin
