#include "input_helper/permission_rule.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorrin::input_helper {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::Optional;

TEST(PermissionRule, the_words_are_ask_allow_and_deny) {
  EXPECT_EQ(permissionTerm("ask"), PermissionTerm::ask);
  EXPECT_EQ(permissionTerm("allow"), PermissionTerm::allow);
  EXPECT_EQ(permissionTerm("deny"), PermissionTerm::deny);
  EXPECT_EQ(permissionTerm("always"), std::nullopt);
  EXPECT_EQ(permissionTerm(""), std::nullopt);
}

TEST(PermissionRule, asking_needs_no_rule) {
  EXPECT_EQ(permissionRule(PermissionTerm::ask, "player"), "");
}

TEST(PermissionRule, a_grant_is_for_one_user_at_this_machine_only) {
  EXPECT_THAT(
      permissionRule(PermissionTerm::allow, "player"),
      Optional(HasSubstr(R"(subject.user == "player" && subject.local && subject.active) {)")));
}

TEST(PermissionRule, a_refusal_holds_everywhere) {
  const auto rule = permissionRule(PermissionTerm::deny, "player");
  EXPECT_THAT(rule, Optional(HasSubstr("polkit.Result.NO")));
  EXPECT_THAT(rule, Optional(Not(HasSubstr("active"))));
}

TEST(PermissionRule, a_rule_is_about_starting_the_helper_only) {
  EXPECT_THAT(permissionRule(PermissionTerm::allow, "player"),
              Optional(HasSubstr(R"(action.id == "org.vorrin.input-helper" &&)")));
}

TEST(PermissionRule, a_name_that_would_end_the_string_is_refused) {
  EXPECT_EQ(permissionRule(PermissionTerm::allow, "a\" || true || \""), std::nullopt);
  EXPECT_EQ(permissionRule(PermissionTerm::allow, "a\\"), std::nullopt);
  EXPECT_EQ(permissionRule(PermissionTerm::deny, "a\nb"), std::nullopt);
  EXPECT_EQ(permissionRule(PermissionTerm::allow, ""), std::nullopt);
}

}  // namespace
}  // namespace vorrin::input_helper
