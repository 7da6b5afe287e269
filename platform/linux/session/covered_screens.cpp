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

bool contains(const std::vector<std::uint32_t>& all, std::uint32_t one) {
  return std::find(all.begin(), all.end(), one) != all.end();
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

/// Whether the window is shown, has at least this size, and is not the desktop itself.
bool isOrdinaryAndCovers(xcb_connection_t* connection, xcb_window_t id, const QSize& size) {
  const ServerWindow window(connection, id);
  return window.isShown() && window.place->width >= size.width() &&
         window.place->height >= size.height() &&
         !contains(xcbProperty(connection, id, "_NET_WM_WINDOW_TYPE"),
                   xcbAtom(connection, "_NET_WM_WINDOW_TYPE_DESKTOP"));
}

/// Whether `cover` belongs to a game of the older kind. To fill the screen it lays a window of its
/// own over everything, as a locker does, but keeps its ordinary window, in that size, below. No
/// locker shows such a window. A window manager that locks the screen itself might.
bool isOfGame(xcb_connection_t* connection, xcb_window_t root, xcb_window_t cover,
              const QSize& size) {
  const auto isOfCoversClient = [&](xcb_window_t window) {
    return areOfOneClient(connection, window, cover);
  };
  const auto managers = xcbProperty(connection, root, "_NET_SUPPORTING_WM_CHECK");
  if (std::any_of(managers.begin(), managers.end(), isOfCoversClient)) return false;
  const auto managed = xcbProperty(connection, root, "_NET_CLIENT_LIST");
  return std::any_of(managed.begin(), managed.end(), [&](xcb_window_t window) {
    return isOfCoversClient(window) && isOrdinaryAndCovers(connection, window, size);
  });
}

/// Whether a window manager has marked the window, or one inside it, as in its care.
bool isManaged(xcb_connection_t* connection, xcb_window_t window, int depth = deepestFrame) {
  if (!xcbProperty(connection, window, "WM_STATE").empty()) return true;
  if (depth == 0) return false;
  const auto children = childrenOf(connection, window);
  return std::any_of(children.begin(), children.end(),
                     [&](xcb_window_t child) { return isManaged(connection, child, depth - 1); });
}

/// Whether no window manager has a say in the window.
bool isOfItsOwn(xcb_connection_t* connection, xcb_window_t root, xcb_window_t window,
                const QSize& size) {
  return !isManaged(connection, window) && !isOfGame(connection, root, window, size);
}

}  // namespace

bool areScreensCovered(xcb_connection_t* connection, xcb_window_t root) {
  QRegion open;
  for (const QScreen* screen : QGuiApplication::screens()) open += placeOf(*screen);
  for (const xcb_window_t id : childrenOf(connection, root)) {
    const ServerWindow window(connection, id);
    if (!window.isShown() || window.attributes->override_redirect == 0) continue;
    const QRect place(window.place->x, window.place->y, window.place->width, window.place->height);
    if (open.intersects(place) && isOfItsOwn(connection, root, id, place.size())) open -= place;
  }
  return open.isEmpty();
}

bool coversAScreen(const QRect& place) {
  const auto screens = QGuiApplication::screens();
  return std::any_of(screens.begin(), screens.end(),
                     [&](const QScreen* screen) { return place.contains(placeOf(*screen)); });
}

}  // namespace vorrin
