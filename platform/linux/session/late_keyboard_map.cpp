#include "platform/linux/session/late_keyboard_map.h"

#include <xkbcommon/xkbcommon-x11.h>

#include <QGuiApplication>
#include <QWindow>
#include <cstring>
#include <utility>

#include "platform/linux/foundation/xcb_xkb.h"

namespace vorrin {

LateKeyboardMap::LateKeyboardMap(std::function<bool()> isInFront)
    : isInFront_(std::move(isInFront)) {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a connection.
  if (x11 == nullptr || x11->connection() == nullptr) return;
  connection_ = x11->connection();
  const auto* const extension = xcb_get_extension_data(connection_, &xcb_xkb_id);
  if (extension == nullptr || extension->present == 0) return;
  extensionEvent_ = extension->first_event;
  coreKeyboard_ = xkb_x11_get_core_keyboard_device_id(connection_);
  qGuiApp->installNativeEventFilter(this);
}

void LateKeyboardMap::update() {
  const QWindow* const window = QGuiApplication::focusWindow();
  if (window == nullptr || !isInFront_()) return;
  const auto announcement = std::exchange(kept_, std::nullopt);
  if (!announcement) return;
  constexpr std::uint8_t isForParents = 0;
  // Without a mask the server gives it to the client that made the window.
  xcb_send_event(connection_, isForParents, static_cast<xcb_window_t>(window->winId()),
                 XCB_EVENT_MASK_NO_EVENT, announcement->data());
  xcb_flush(connection_);
}

bool LateKeyboardMap::nativeEventFilter(const QByteArray& /*eventType*/, void* message, qintptr*) {
  const auto& event = *static_cast<const xcb_generic_event_t*>(message);
  if (!isAnnouncement(event) || isInFront_()) return false;
  std::memcpy(kept_.emplace().data(), &event, sizeof(Announcement));
  return true;
}

bool LateKeyboardMap::isAnnouncement(const xcb_generic_event_t& event) const {
  // What a client, not the server, has sent carries this mark.
  constexpr int sent = 0x80;
  // The extension has one event, whose second byte says what it tells of.
  return (event.response_type & ~sent) == extensionEvent_ &&
         (event.pad0 == XCB_XKB_NEW_KEYBOARD_NOTIFY || event.pad0 == XCB_XKB_MAP_NOTIFY) &&
         reinterpret_cast<const xcb_xkb_map_notify_event_t&>(event).deviceID == coreKeyboard_;
}

}  // namespace vorrin
