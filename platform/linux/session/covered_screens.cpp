#include "platform/linux/session/covered_screens.h"

#include <QGuiApplication>
#include <QRegion>
#include <QScreen>
#include <algorithm>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin {

namespace {

/// Lockers may leave out the outermost pixels, and sizes in points are rounded.
constexpr int margin = 2;

/// From the frame that a window manager puts around a window to the window itself.
constexpr int deepestFrame = 2;

/// A screen in pixels, without its outermost ones.
QRect placeOf(const QScreen& screen) {
  // Only the size is in points.
  const QSizeF size = QSizeF(screen.geometry().size()) * screen.devicePixelRatio();
  return QRect(screen.geometry().topLeft(), size.toSize())
      .adjusted(margin, margin, -margin, -margin);
}

std::vector<xcb_window_t> childrenOf(xcb_connection_t* connection, xcb_window_t window) {
  const auto tree =
      ownReply(xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
  if (!tree) return {};
  const std::span children(xcb_query_tree_children(tree.get()),
                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
  return {children.begin(), children.end()};
}

/// What the server says of a window's looks; both null for one that is gone.
struct ServerWindow {
  ServerWindow(xcb_connection_t* connection, xcb_window_t window) {
    const auto attributesRequest = xcb_get_window_attributes(connection, window);
    const auto placeRequest = xcb_get_geometry(connection, window);
    attributes = ownReply(xcb_get_window_attributes_reply(connection, attributesRequest, nullptr));
    place = ownReply(xcb_get_geometry_reply(connection, placeRequest, nullptr));
  }

  [[nodiscard]] bool isShown() const {
    return attributes && place && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT;
  }

  XcbReply<xcb_get_window_attributes_reply_t> attributes;
  XcbReply<xcb_get_geometry_reply_t> place;
};

/// Whether a window manager has marked the window, or one inside it, as in its care.
bool isManaged(xcb_connection_t* connection, xcb_window_t window, int depth = deepestFrame) {
  if (!xcbProperty(connection, window, "WM_STATE").empty()) return true;
  if (depth == 0) return false;
  const auto children = childrenOf(connection, window);
  return std::any_of(children.begin(), children.end(),
                     [&](xcb_window_t child) { return isManaged(connection, child, depth - 1); });
}

}  // namespace

bool areScreensCovered(xcb_connection_t* connection, xcb_window_t root) {
  QRegion open;
  for (const QScreen* screen : QGuiApplication::screens()) open += placeOf(*screen);
  for (const xcb_window_t id : childrenOf(connection, root)) {
    const ServerWindow window(connection, id);
    if (!window.isShown() || window.attributes->override_redirect == 0) continue;
    const QRect place(window.place->x, window.place->y, window.place->width, window.place->height);
    if (open.intersects(place) && !isManaged(connection, id)) open -= place;
  }
  return open.isEmpty();
}

bool coversAScreen(const QRect& place) {
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](const QScreen* screen) { return place.contains(placeOf(*screen)); });
}

}  // namespace vorrin
