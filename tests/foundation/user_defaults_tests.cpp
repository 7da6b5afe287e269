#include "platform/user_defaults.h"

#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "platform/uuid.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

using Values = std::vector<std::pair<std::string, DefaultsObject>>;

const Values valuesOfEveryType = {
    {"yes", true},
    {"no", false},
    {"one", std::int64_t{1}},
    {"smallest", std::numeric_limits<std::int64_t>::min()},
    {"largest", std::numeric_limits<std::int64_t>::max()},
    {"real", 0.05},
    {"wholeReal", 5.0},
    {"largestReal", std::numeric_limits<double>::max()},
    {"tiniest", std::numeric_limits<double>::denorm_min()},
    {"text", "naïve ☕\r\n"s},
    {"number", "0.05"s},
    {"marked", "\uFEFFname"s},
    {"emptyText", ""s},
    {"json", Data{"{\"a\":[1,2.5,\"☕\"]}"}},
    {"spaced", Data{"{ \"a\": 1 }"}},
    {"bytes", Data{"\xFF\0{}"s}},
    {"emptyData", Data{}},
    {"key with ☕", std::int64_t{-1}},
};

/// A domain of its own, removed at the end.
class UserDefaultsTest : public testing::Test {
 protected:
  ~UserDefaultsTest() override { UserDefaults::removePersistentDomain(name); }

  [[nodiscard]] UserDefaults domain() const {
    auto made = UserDefaults::suite(name);
    if (!made) throw std::runtime_error("no suite");
    return *made;
  }

  const std::string name = "vorrin-test-" + newUuidString();
};

TEST_F(UserDefaultsTest, gives_values_of_every_type_to_another_object_at_once) {
  const auto reader = domain();
  EXPECT_FALSE(reader.object("real").value || reader.object("real").failure);
  EXPECT_FALSE(reader.takeNotice());
  EXPECT_EQ(domain().set(valuesOfEveryType), std::nullopt);
  for (const auto& [key, value] : valuesOfEveryType) {
    EXPECT_EQ(reader.object(key).value, value) << key;
    EXPECT_EQ(reader.object(key).failure, std::nullopt) << key;
  }
}

TEST_F(UserDefaultsTest, replaces_a_value_by_one_of_another_type_and_leaves_the_others) {
  EXPECT_FALSE(domain().set(valuesOfEveryType));
  EXPECT_FALSE(domain().set(Values{{"real", "text"s}, {"new", false}}));
  for (const auto& [key, value] : valuesOfEveryType) {
    const auto expected = key == "real" ? DefaultsObject("text"s) : value;
    EXPECT_EQ(domain().object(key).value, expected) << key;
  }
  EXPECT_EQ(domain().object("new").value, DefaultsObject(false));
}

TEST_F(UserDefaultsTest, keeps_values_apart_from_every_other_domain) {
  const auto other = UserDefaults::suite(name + "-other");
  ASSERT_TRUE(other);
  EXPECT_FALSE(domain().set(valuesOfEveryType));
  EXPECT_FALSE(other->object("real").value);
  EXPECT_FALSE(UserDefaults::standard().object("naïve key of no domain").value);
}

TEST_F(UserDefaultsTest, holds_nothing_any_more_when_it_was_removed) {
  EXPECT_FALSE(domain().set(valuesOfEveryType));
  UserDefaults::removePersistentDomain(name);
  EXPECT_FALSE(domain().object("real").value);
  UserDefaults::removePersistentDomain(name);
  EXPECT_FALSE(domain().set(Values{{"real", 1.0}}));
  EXPECT_EQ(domain().object("real").value, DefaultsObject(1.0));
  EXPECT_FALSE(domain().object("yes").value);
}

}  // namespace
}  // namespace vorrin
