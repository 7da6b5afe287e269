#include "platform/linux/session/lock_screen_watch.h"

#include <QRect>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"
#include "platform/linux/session/covered_screens.h"

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

LockScreenWatch::LockScreenWatch(Findings findings) : findings_(std::move(findings)) {
  connect();
  if (!connection_) return;
  notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()),
                                                QSocketNotifier::Read);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, &lookAgain_,
                   [this] { followEvents(); });
  lookAgain_.setSingleShot(true);
  QObject::connect(&lookAgain_, &QTimer::timeout, &lookAgain_, [this] {
    look();
    followEvents();
  });
  // Vorrin may be started behind a lock screen.
  lookAgain_.start(0);
}

void LockScreenWatch::connect() {
  int screenNumber = 0;
  connection_.reset(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(connection_.get()) != 0) return connection_.reset();
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screenNumber > 0; --screenNumber) xcb_screen_next(&screen);
  root_ = screen.data->root;
  unmapped_ = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, unmapped_, root_, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
  constexpr std::uint32_t ofChildren = XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), root_, XCB_CW_EVENT_MASK, &ofChildren);
  xcb_flush(connection_.get());
}

bool LockScreenWatch::isKeyboardHeld() const {
  // No window that is not seen can get the keyboard. The server looks first whether somebody else
  // has it, so the refusal tells that, and nothing has changed.
  const auto request = xcb_grab_keyboard(connection_.get(), 0, unmapped_, XCB_CURRENT_TIME,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const auto refusal = ownReply(xcb_grab_keyboard_reply(connection_.get(), request, nullptr));
  return refusal && refusal->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

// Each question reads what comes before its answer, so no event of that may be left behind: the
// socket says nothing of it any more.
void LockScreenWatch::followEvents() {
  while (takeEvents()) {
    pause_ = firstPause;
    look();
  }
}

bool LockScreenWatch::takeEvents() {
  bool isReason = false;
  while (const auto event = ownReply(xcb_poll_for_event(connection_.get()))) {
    isReason = isReasonToLook(*event) || isReason;
  }
  return isReason;
}

bool LockScreenWatch::isReasonToLook(const xcb_generic_event_t& event) {
  // What a client, not the server, has sent carries a mark in the type.
  switch (event.response_type) {
    case XCB_MAP_NOTIFY: {
      const auto& mapped = as<xcb_map_notify_event_t>(event);
      return mapped.override_redirect != 0 &&
             coversAScreen(placeOf(connection_.get(), mapped.window));
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
  const bool isCovered = areScreensCovered(connection_.get(), root_);
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
