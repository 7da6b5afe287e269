#include "platform/linux/session/single_instance.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

TEST(ActivationToken, is_handed_on_and_the_window_shown_in_any_case) {
  int shown = 0;
  SingleInstance instance({.reopen = [&] { ++shown; }, .stopAll = [] {}});
  qputenv(tokenVariable, "earlier");
  for (const QVariantMap& data : {QVariantMap{},
                                  {{"desktop-startup-id", "something"}},
                                  {{"activation-token", QStringList{"a", "b"}}}}) {
    instance.Activate(data);
    EXPECT_EQ(qgetenv(tokenVariable), "earlier");
  }
  instance.Activate({{"activation-token", "a token"}});
  EXPECT_EQ(qgetenv(tokenVariable), "a token");
  EXPECT_EQ(shown, 4);
  qunsetenv(tokenVariable);
}

}  // namespace
}  // namespace vorrin
