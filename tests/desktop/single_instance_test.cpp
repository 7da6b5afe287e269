#include "platform/linux/session/single_instance.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";

struct ActivationToken : testing::Test {
  int shown = 0;
  SingleInstance instance{{.reopen = [this] { ++shown; }, .stopAll = [] {}}};

  ActivationToken() { qputenv(tokenVariable, "earlier"); }
  ~ActivationToken() override { qunsetenv(tokenVariable); }

  QByteArray tokenAfter(const QVariantMap& platformData) {
    instance.Activate(platformData);
    return qgetenv(tokenVariable);
  }
};

TEST_F(ActivationToken, is_handed_on) {
  EXPECT_EQ(tokenAfter({{"activation-token", "a token"}}), "a token");
  EXPECT_EQ(shown, 1);
}

TEST_F(ActivationToken, of_the_longest_length_is_handed_on) {
  const QString token(1024, 'x');
  EXPECT_EQ(tokenAfter({{"activation-token", token}}), token.toUtf8());
}

TEST_F(ActivationToken, that_is_no_token_is_left_out_and_the_window_shown_all_the_same) {
  const QVariantList none{QString(1025, 'x'),       QString(342, QChar(0x20ac)),
                          QString(10'000'000, 'x'), QString(),
                          QByteArray("\0\xff", 2),  7,
                          QStringList{"a", "b"}};
  for (const QVariant& value : none) {
    EXPECT_EQ(tokenAfter({{"activation-token", value}}), "earlier") << value.typeName();
  }
  EXPECT_EQ(tokenAfter({}), "earlier");
  EXPECT_EQ(tokenAfter({{"desktop-startup-id", "something"}}), "earlier");
  EXPECT_EQ(shown, none.size() + 2);
}

}  // namespace
}  // namespace vorrin
