#include "platform/linux/widgets/activation_clicks.h"

#include <QMouseEvent>
#include <QWindow>

namespace vorrin {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

/// Longer than a click of a macro is on its way, shorter than a user takes to find a button in a
/// window that has just come to the front.
constexpr milliseconds moment{100};

/// X servers and compositors on this machine stamp events by its monotonic clock. Those of another
/// machine's clock count as of now.
milliseconds ageOf(const QMouseEvent& event) {
  constexpr milliseconds most{10000};
  const auto now = std::chrono::duration_cast<milliseconds>(steady_clock::now().time_since_epoch());
  const milliseconds age{static_cast<std::int32_t>(static_cast<std::uint32_t>(now.count()) -
                                                   static_cast<std::uint32_t>(event.timestamp()))};
  return abs(age) <= most ? age : milliseconds(0);
}

}  // namespace

ActivationClicks::ActivationClicks(QGuiApplication& application) {
  application.installEventFilter(this);
  connect(&application, &QGuiApplication::applicationStateChanged, this,
          [this](Qt::ApplicationState state) {
            activeSince_.reset();
            if (state == Qt::ApplicationActive) activeSince_ = steady_clock::now();
          });
}

bool ActivationClicks::eventFilter(QObject* object, QEvent* event) {
  // Widgets get theirs from their windows.
  if (!object->isWindowType()) return false;
  const auto button = [event] { return static_cast<QMouseEvent*>(event)->button(); };
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      swallowed_.setFlag(button(), isTooEarly(*static_cast<QMouseEvent*>(event)));
      // Where a click does not do so by itself.
      if (!activeSince_) static_cast<QWindow*>(object)->requestActivate();
      return swallowed_.testFlag(button());
    case QEvent::MouseButtonDblClick:
      return swallowed_.testFlag(button());
    case QEvent::MouseButtonRelease: {
      const bool isSwallowed = swallowed_.testFlag(button());
      swallowed_.setFlag(button(), false);
      return isSwallowed;
    }
    default:
      return false;
  }
}

bool ActivationClicks::isTooEarly(const QMouseEvent& press) const {
  return !activeSince_ || steady_clock::now() - *activeSince_ - ageOf(press) < moment;
}

}  // namespace vorrin
