#include "platform/linux/session/single_instance.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

TEST(ActivationToken, is_handed_on_if_it_is_one_and_the_window_shown_in_any_case) {
  int shown = 0;
  SingleInstance instance({.reopen = [&] { ++shown; }, .stopAll = [] {}});
  const QVariantList tokens{"a token", QString(1024, 'x')};
  const QVariantList none{
      QString(1025, 'x'),   QString(342, QChar(0x20ac)), QString(), QByteArray("\0\xff", 2), 7,
      QStringList{"a", "b"}};
  for (const QVariant& value : tokens + none) {
    qputenv(tokenVariable, "earlier");
    instance.Activate({{"activation-token", value}});
    EXPECT_EQ(qgetenv(tokenVariable),
              tokens.contains(value) ? value.toString().toUtf8() : QByteArray("earlier"))
        << value.typeName();
  }
  instance.Activate({{"desktop-startup-id", "something"}});
  EXPECT_EQ(qgetenv(tokenVariable), "earlier");
  EXPECT_EQ(shown, tokens.size() + none.size() + 1);
  qunsetenv(tokenVariable);
}

}  // namespace
}  // namespace vorrin
