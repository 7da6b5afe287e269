#include "platform/linux/session/single_instance.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace vorrin {

namespace {

constexpr auto name = "org.vorrin.Vorrin";
constexpr auto path = "/org/vorrin/Vorrin";
constexpr auto interface = "org.freedesktop.Application";
constexpr int answerMilliseconds = 2000;

// The variable by which a launcher hands over the user's wish to see the program's window, and the
// name under which the interface passes it on.
constexpr auto tokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr auto tokenKey = "activation-token";

QVariantMap ownPlatformData() {
  QVariantMap data;
  if (qEnvironmentVariableIsSet(tokenVariable)) {
    data[tokenKey] = qEnvironmentVariable(tokenVariable);
  }
  return data;
}

bool takeName(const QDBusConnection& bus) {
  bus.interface()->setTimeout(answerMilliseconds);
  const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
      bus.interface()->registerService(name);
  // A bus that gives names to nobody must not keep the program from starting.
  return !reply.isValid() || reply.value() == QDBusConnectionInterface::ServiceRegistered;
}

/// False when there is nobody to call up any more.
bool callUpFirst(const QDBusConnection& bus) {
  QDBusMessage call = QDBusMessage::createMethodCall(name, path, interface, "Activate");
  call << ownPlatformData();
  // The bus must not start yet another one to answer this.
  call.setAutoStartService(false);
  const QDBusMessage answer = bus.call(call, QDBus::Block, answerMilliseconds);
  if (answer.type() != QDBusMessage::ErrorMessage) return true;
  // One that is busy has the call waiting for it; one that ended meanwhile has given back the name.
  return bus.interface()->isServiceRegistered(name);
}

}  // namespace

SingleInstance::SingleInstance(InstanceRequests requests) : requests_(std::move(requests)) {}

bool SingleInstance::claim() {
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return true;
  // Before taking the name: whoever has it can be asked at once.
  bus.registerObject(path, this, QDBusConnection::ExportAllSlots);
  return takeName(bus) || !callUpFirst(bus);
}

void SingleInstance::Activate(const QVariantMap& platformData) {
  // The widget library takes the token from here when it next raises a window.
  const QByteArray token = platformData.value(tokenKey).toString().toUtf8();
  if (!token.isEmpty()) qputenv(tokenVariable, token);
  requests_.reopen();
}

void SingleInstance::Open(const QStringList& /*addresses*/, const QVariantMap& platformData) {
  Activate(platformData);
}

void SingleInstance::ActivateAction(const QString& action, const QVariantList& /*parameters*/,
                                    const QVariantMap& /*platformData*/) {
  if (action == QLatin1String("stop-all")) requests_.stopAll();
}

}  // namespace vorrin
