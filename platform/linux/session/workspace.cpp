#include "platform/workspace.h"

#include <QGuiApplication>
#include <QTimer>
#include <optional>
#include <utility>

#include "platform/linux/input/input_way.h"
#include "platform/linux/session/lock_screen_watch.h"
#include "platform/linux/session/login_session.h"
#include "platform/linux/session/screen_savers.h"
#include "platform/linux/session/session_presence.h"

namespace vorrin {

namespace {

void tell(const std::function<void()>& notification) {
  if (notification) notification();
}

class WorkspaceObserver {
 public:
  explicit WorkspaceObserver(WorkspaceNotifications notifications)
      : notifications_(std::move(notifications)) {
    current = this;
    // Reaching for the buses may take a while; the window comes first.
    QTimer::singleShot(0, &context_, [this] { listen(); });
  }
  ~WorkspaceObserver() {
    if (current == this) current = nullptr;
  }
  WorkspaceObserver(const WorkspaceObserver&) = delete;
  WorkspaceObserver& operator=(const WorkspaceObserver&) = delete;

  [[nodiscard]] bool isSessionActive() const { return presence_.isActive(); }

  static WorkspaceObserver* current;

 private:
  void listen() {
    if (qGuiApp != nullptr) watchDisplay();
    login_.emplace(presence_,
                   LoginSession::Requests{.sleep = notifications_.willSleep,
                                          .lock = notifications_.sessionDidResignActive});
    screenSavers_.emplace(presence_);
  }

  void watchDisplay() {
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &context_,
                     [this](Qt::ApplicationState state) {
                       if (state == Qt::ApplicationActive) presence_.userWasSeen();
                     });
    // The X server of a Wayland session is told nothing of its lock screen.
    if (QGuiApplication::platformName() != "xcb" || inputWay() != InputWay::x11) return;
    lockScreens_.emplace(LockScreenWatch::Findings{
        .covered = [this](bool is) { presence_.setScreenSaver("X server", is); },
        .locked = [this](bool is) { presence_.setLocked("X server", is); }});
  }

  WorkspaceNotifications notifications_;
  SessionPresence presence_{
      {.resigned = [this] { tell(notifications_.sessionDidResignActive); },
       .activity = [this] { tell(notifications_.sessionActivityDidChange); }}};
  std::optional<LockScreenWatch> lockScreens_;
  std::optional<LoginSession> login_;
  std::optional<ScreenSavers> screenSavers_;
  QObject context_;  ///< closures on it end with the observer
};

WorkspaceObserver* WorkspaceObserver::current = nullptr;

}  // namespace

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  return std::make_shared<WorkspaceObserver>(std::move(notifications));
}

bool sessionIsActive() {
  return WorkspaceObserver::current == nullptr || WorkspaceObserver::current->isSessionActive();
}

}  // namespace vorrin
