#include "platform/linux/widgets/activation_clicks.h"

#include <xcb/xcb.h>

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

/// Grabs, and a pointer over a window while nobody has the keyboard, are told in the same terms.
bool isAboutKeyboard(const xcb_focus_in_event_t& event) {
  return event.mode != XCB_NOTIFY_MODE_GRAB && event.mode != XCB_NOTIFY_MODE_UNGRAB &&
         event.detail != XCB_NOTIFY_DETAIL_POINTER &&
         event.detail != XCB_NOTIFY_DETAIL_POINTER_ROOT;
}

}  // namespace

ActivationClicks::ActivationClicks(QGuiApplication& application) {
  application.installEventFilter(this);
  application.installNativeEventFilter(this);
  connect(&application, &QGuiApplication::applicationStateChanged, this,
          [this](Qt::ApplicationState state) { setActive(state == Qt::ApplicationActive); });
}

bool ActivationClicks::eventFilter(QObject* object, QEvent* event) {
  // Widgets get theirs from their windows.
  if (!object->isWindowType()) return false;
  const auto button = [event] { return static_cast<QMouseEvent*>(event)->button(); };
  switch (event->type()) {
    case QEvent::MouseButtonPress:
      swallowed_.setFlag(button(), isTooEarly(*static_cast<QMouseEvent*>(event)));
      // Where a click does not do so by itself.
      if (!isActive_) static_cast<QWindow*>(object)->requestActivate();
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

bool ActivationClicks::nativeEventFilter(const QByteArray& eventType, void* message, qintptr*) {
  if (eventType != "xcb_generic_event_t") return false;
  const auto type =
      static_cast<const xcb_generic_event_t*>(message)->response_type & ~std::uint8_t{0x80};
  if (type != XCB_FOCUS_IN && type != XCB_FOCUS_OUT) return false;
  if (isAboutKeyboard(*static_cast<const xcb_focus_in_event_t*>(message))) {
    setActive(type == XCB_FOCUS_IN);
  }
  return false;
}

void ActivationClicks::setActive(bool isActive) {
  if (isActive && !isActive_) activeSince_ = steady_clock::now();
  isActive_ = isActive;
}

bool ActivationClicks::isTooEarly(const QMouseEvent& press) const {
  return !isActive_ || steady_clock::now() - activeSince_ - ageOf(press) < moment;
}

}  // namespace vorrin
