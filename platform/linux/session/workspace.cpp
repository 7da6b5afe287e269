#include "platform/workspace.h"

#include <QGuiApplication>
#include <utility>

#include "platform/linux/session/login_session.h"
#include "platform/linux/session/screen_savers.h"
#include "platform/linux/session/session_presence.h"

namespace vorrin {

namespace {

bool isSessionActive = true;

class WorkspaceObserver {
 public:
  explicit WorkspaceObserver(WorkspaceNotifications notifications)
      : notifications_(std::move(notifications)),
        presence_([this](bool isActive) { tell(isActive); }),
        login_(presence_, notifications_.willSleep),
        screenSavers_(presence_) {
    if (qGuiApp == nullptr) return;
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &login_,
                     [this](Qt::ApplicationState state) {
                       if (state == Qt::ApplicationActive) presence_.userWasSeen();
                     });
  }

 private:
  void tell(bool isActive) const {
    isSessionActive = isActive;
    const auto& notification =
        isActive ? notifications_.sessionDidBecomeActive : notifications_.sessionDidResignActive;
    if (notification) notification();
  }

  WorkspaceNotifications notifications_;
  SessionPresence presence_;
  LoginSession login_;
  ScreenSavers screenSavers_;
};

}  // namespace

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  return std::make_shared<WorkspaceObserver>(std::move(notifications));
}

bool sessionIsActive() {
  return isSessionActive;
}

}  // namespace vorrin
