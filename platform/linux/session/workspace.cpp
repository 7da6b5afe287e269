#include "platform/workspace.h"

#include <QGuiApplication>
#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>
#include <utility>

#include "platform/linux/input/input_way.h"
#include "platform/linux/session/lock_signs.h"
#include "platform/linux/session/login_session.h"
#include "platform/linux/session/screen_savers.h"
#include "platform/linux/session/session_presence.h"

namespace vorrin {

namespace {

using Clock = std::chrono::steady_clock;

/// Macros ask a thousand times a second; nobody locks the screen and types in so short a time.
constexpr std::chrono::milliseconds lookInterval{20};
/// How old may be what was seen. Between the two the display has time to answer, while other
/// programs have it busy, before a macro would have to wait for it and come too late.
constexpr std::chrono::milliseconds longestBelieved{50};
constexpr std::chrono::milliseconds returnInterval{1000};

bool isSessionActive = true;

class WorkspaceObserver {
 public:
  explicit WorkspaceObserver(WorkspaceNotifications notifications)
      : notifications_(std::move(notifications)),
        presence_([this](bool isActive) { changed(isActive); }),
        login_(presence_, notifications_.willSleep),
        screenSavers_(presence_) {
    current = this;
    if (qGuiApp == nullptr) return;
    returns_.setInterval(returnInterval);
    QObject::connect(&returns_, &QTimer::timeout, &login_, [this] { look(); });
    QObject::connect(qGuiApp, &QGuiApplication::applicationStateChanged, &login_,
                     [this](Qt::ApplicationState state) {
                       if (state == Qt::ApplicationActive) presence_.userWasSeen();
                     });
  }
  ~WorkspaceObserver() {
    if (current == this) current = nullptr;
  }
  WorkspaceObserver(const WorkspaceObserver&) = delete;
  WorkspaceObserver& operator=(const WorkspaceObserver&) = delete;

  /// Looks at the display if that was not done just now.
  void look() {
    // The X server of a Wayland session is told nothing of its lock screen.
    if (qGuiApp == nullptr || inputWay() != InputWay::x11) return;
    if (!signs_) signs_ = std::make_unique<LockSignsOnX11>();
    const auto now = Clock::now();
    if (asked_ && now - *asked_ < longestBelieved) takeAnswer(*asked_, now);
    if (now - seen_ >= longestBelieved) {
      asked_.reset();
      saw(signs_->look(), now, now);
    } else if (!asked_ && now - seen_ >= lookInterval) {
      signs_->ask();
      asked_ = now;
    }
  }

  static WorkspaceObserver* current;

 private:
  void takeAnswer(Clock::time_point asked, Clock::time_point now) {
    const auto signs = signs_->answered();
    if (!signs) return;
    asked_.reset();
    saw(*signs, asked, now);
  }

  void saw(const LockSigns& signs, Clock::time_point asked, Clock::time_point now) {
    seen_ = asked;
    isLooking_ = true;
    presence_.sawDisplay(signs, now);
    isLooking_ = false;
  }

  void changed(bool isActive) {
    isSessionActive = isActive;
    // Whoever comes back need not press a key.
    isActive ? returns_.stop() : returns_.start();
    // Whoever just wants to know is in the middle of something that being told could upset.
    if (!isLooking_) return tell(isActive);
    QTimer::singleShot(0, &login_, [this, isActive] { tell(isActive); });
  }

  void tell(bool isActive) const {
    const auto& notification =
        isActive ? notifications_.sessionDidBecomeActive : notifications_.sessionDidResignActive;
    if (notification) notification();
  }

  WorkspaceNotifications notifications_;
  SessionPresence presence_;
  LoginSession login_;
  ScreenSavers screenSavers_;
  std::unique_ptr<LockSignsOnX11> signs_;
  QTimer returns_;
  Clock::time_point seen_;  ///< when the display was last asked for what is known of it
  std::optional<Clock::time_point> asked_;  ///< when it was asked for what it has not answered yet
  bool isLooking_ = false;
};

WorkspaceObserver* WorkspaceObserver::current = nullptr;

}  // namespace

std::shared_ptr<void> observeWorkspace(WorkspaceNotifications notifications) {
  return std::make_shared<WorkspaceObserver>(std::move(notifications));
}

bool sessionIsActive() {
  if (WorkspaceObserver::current != nullptr) WorkspaceObserver::current->look();
  return isSessionActive;
}

bool sessionWasActive() {
  return isSessionActive;
}

}  // namespace vorrin
