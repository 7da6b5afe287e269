#include "platform/linux/input/helper/helper_service.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QTemporaryDir>

#include "backend_test.h"
#include "tests/x11/harness/process.h"

namespace vorrin::helper {
namespace {

/// A helper on a bus of the test's own. Its first one ends as it is called.
class EndingHelper : public QDBusVirtualObject {
 public:
  explicit EndingHelper(QString bus) : bus_(std::move(bus)) { serve(); }
  ~EndingHelper() override { QDBusConnection::disconnectFromBus(name); }

  [[nodiscard]] QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& call, const QDBusConnection& connection) override {
    mayAsk.push_back(call.isInteractiveAuthorizationAllowed());
    if (mayAsk.size() > 1) return connection.send(call.createReply());
    call.setDelayedReply(true);
    QMetaObject::invokeMethod(this, &EndingHelper::serve, Qt::QueuedConnection);
    return true;
  }

  std::vector<bool> mayAsk;  ///< of each call

 private:
  void serve() {
    QDBusConnection::disconnectFromBus(name);
    auto connection = QDBusConnection::connectToBus(bus_, name);
    ASSERT_TRUE(connection.registerVirtualObject("/org/vorrin/InputHelper", this));
    ASSERT_TRUE(connection.registerService("org.vorrin.InputHelper"));
  }

  static constexpr const char* name = "ending helper";
  QString bus_;
};

TEST(HelperService, a_helper_that_ends_as_it_is_called_is_called_again_with_the_same_wish) {
  const QTemporaryDir folder;
  const QString address = "unix:path=" + folder.filePath("bus");
  x11_tests::Process daemon({"dbus-daemon", "--session", "--nofork", "--nopidfile",
                             "--print-address", "--address=" + address.toStdString()});
  ASSERT_TRUE(daemon.readLine());
  qputenv("DBUS_SYSTEM_BUS_ADDRESS", address.toUtf8());
  int argumentCount = 0;
  QCoreApplication application(argumentCount, nullptr);
  EndingHelper helper(address);
  QObject receiver;
  std::optional<bool> isDone;
  callHelper(receiver, "TakeBack", true,
             [&](const Reply& reply) { isDone = reply.refusal.empty(); });
  ASSERT_TRUE(until([&] { return isDone.has_value(); }));
  EXPECT_TRUE(*isDone);
  EXPECT_EQ(helper.mayAsk, std::vector({true, true}));
}

}  // namespace
}  // namespace vorrin::helper
