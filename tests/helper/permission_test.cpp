#include "platform/linux/input/helper/permission.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTemporaryDir>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>

namespace vorrin::helper {
namespace {

bool until(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
  }
  return true;
}

/// A bus with an authority on it that allows everything.
class Bus : private QDBusVirtualObject {
 public:
  explicit Bus(const QString& address) {
    process_.start("dbus-daemon",
                   {"--session", "--nofork", "--print-address", "--address=" + address});
    if (!process_.waitForStarted() || !process_.waitForReadyRead()) ADD_FAILURE() << "no bus";
    QDBusConnection authority = QDBusConnection::connectToBus(address, "authority");
    EXPECT_TRUE(authority.registerVirtualObject("/org/freedesktop/PolicyKit1/Authority", this));
    EXPECT_TRUE(authority.registerService("org.freedesktop.PolicyKit1"));
  }
  ~Bus() override {
    QDBusConnection::disconnectFromBus("authority");
    process_.kill();
    process_.waitForFinished();
  }
  Bus(const Bus&) = delete;
  Bus& operator=(const Bus&) = delete;

 private:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

  bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
    if (call.member() != "CheckAuthorization") return false;
    constexpr bool isAuthorized = true;
    constexpr bool isChallenge = false;
    QDBusArgument result;
    result.beginStructure();
    result << isAuthorized << isChallenge;
    result.beginMap(QMetaType(QMetaType::QString), QMetaType(QMetaType::QString));
    result.endMap();
    result.endStructure();
    return connection.send(call.createReply(QVariant::fromValue(result)));
  }

  QProcess process_;
};

struct AskPermission : testing::Test {
  AskPermission() { ::setenv("DBUS_SYSTEM_BUS_ADDRESS", qPrintable(address), 1); }

  [[nodiscard]] bool answer() {
    std::optional<bool> given;
    askPermission(receiver, [&](bool isAllowed) { given = isAllowed; });
    EXPECT_TRUE(until([&] { return given.has_value(); }));
    return given.value_or(false);
  }

  int argumentCount = 0;
  QCoreApplication application{argumentCount, nullptr};
  QTemporaryDir place;
  QString address = "unix:path=" + place.filePath("bus");
  QObject receiver;
};

TEST_F(AskPermission, the_answer_is_that_of_the_bus_that_is_there_now) {
  EXPECT_FALSE(answer());
  for (int time = 0; time < 2; ++time) {
    auto bus = std::make_unique<Bus>(address);
    EXPECT_TRUE(answer());
    EXPECT_TRUE(answer());
    bus.reset();
    EXPECT_FALSE(answer());
  }
}

}  // namespace
}  // namespace vorrin::helper
