#include "platform/linux/session/lock_screen_watch.h"

#include <QGuiApplication>
#include <QRect>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/session/covered_screens.h"
#include "platform/linux/widgets/toolkit_connection.h"

namespace vorrin {

namespace {

constexpr std::chrono::milliseconds longestPause{1280};

template <class Event>
const Event& as(const xcb_generic_event_t& event) {
  return reinterpret_cast<const Event&>(event);
}

QRect placeOf(xcb_connection_t* connection, xcb_window_t window) {
  const auto place =
      ownReply(xcb_get_geometry_reply(connection, xcb_get_geometry(connection, window), nullptr));
  return place ? QRect(place->x, place->y, place->width, place->height) : QRect();
}

}  // namespace

LockScreenWatch::LockScreenWatch(xcb_connection_t* connection, Findings findings)
    : connection_(connection),
      findings_(std::move(findings)),
      root_(rootWindow(connection)),
      unmapped_(xcb_generate_id(connection)) {
  xcb_create_window(connection, XCB_COPY_FROM_PARENT, unmapped_, root_, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  changeRootEvents(connection, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY, 0);
  qGuiApp->installNativeEventFilter(this);
  lookAgain_.setSingleShot(true);
  lookAgain_.callOnTimeout([this] { look(); });
  lookAgain_.start(0);
}

bool LockScreenWatch::isKeyboardHeld() const {
  // No window that is not seen can get the keyboard. The server looks first whether somebody else
  // has it, so the refusal tells that, and nothing has changed.
  const auto request = xcb_grab_keyboard(connection_, 0, unmapped_, XCB_CURRENT_TIME,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const auto refusal = ownReply(xcb_grab_keyboard_reply(connection_, request, nullptr));
  return refusal && refusal->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool LockScreenWatch::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr*) {
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  if (isReasonToLook(event)) {
    pause_ = firstPause;
    look();
  }
  // Some versions of the toolkit take every change that the root window is told of for its own.
  if (event.response_type != XCB_CONFIGURE_NOTIFY) return false;
  const auto& placed = as<xcb_configure_notify_event_t>(event);
  return placed.event == root_ && placed.window != root_;
}

bool LockScreenWatch::isReasonToLook(const xcb_generic_event_t& event) const {
  // What a client, not the server, has sent carries a mark in the type.
  switch (event.response_type) {
    case XCB_MAP_NOTIFY: {
      const auto& mapped = as<xcb_map_notify_event_t>(event);
      return mapped.override_redirect != 0 && coversAScreen(placeOf(connection_, mapped.window));
    }
    case XCB_CONFIGURE_NOTIFY: {
      const auto& placed = as<xcb_configure_notify_event_t>(event);
      return placed.override_redirect != 0 &&
             coversAScreen({placed.x, placed.y, placed.width, placed.height});
    }
    case XCB_UNMAP_NOTIFY:
      return isLocked_ || lookAgain_.isActive();
    default:
      return false;
  }
}

void LockScreenWatch::look() {
  const bool isCovered = areScreensCovered(connection_, root_);
  const bool looksAgain = isCovered && pause_ <= longestPause;
  if (looksAgain) {
    lookAgain_.start(pause_);
    pause_ *= 2;
  }
  isLocked_ = isCovered && isKeyboardHeld();
  findings_.locked(isLocked_);
  findings_.covered(looksAgain);
}

}  // namespace vorrin
