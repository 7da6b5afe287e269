#include "platform/linux/session/lock_signs.h"

#include <QGuiApplication>
#include <QRegion>
#include <QScreen>
#include <cstdlib>
#include <span>
#include <string_view>
#include <vector>

namespace vorrin {

namespace {

/// Lockers may leave out the outermost pixels, and sizes in points are rounded.
constexpr int margin = 2;

/// From the frame that a window manager puts around a window to the window itself.
constexpr int deepestFrame = 2;

template <class Reply>
using Answer = std::unique_ptr<Reply, decltype(&std::free)>;

template <class Reply>
Answer<Reply> answer(Reply* reply) {
  return {reply, &std::free};
}

std::vector<xcb_window_t> childrenOf(xcb_connection_t* connection, xcb_window_t window) {
  const auto tree =
      answer(xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr));
  if (!tree) return {};
  const std::span children(xcb_query_tree_children(tree.get()),
                           static_cast<std::size_t>(xcb_query_tree_children_length(tree.get())));
  return {children.begin(), children.end()};
}

xcb_atom_t stateProperty(xcb_connection_t* connection) {
  constexpr std::string_view name = "WM_STATE";
  const auto request = xcb_intern_atom(connection, 0, name.size(), name.data());
  const auto atom = answer(xcb_intern_atom_reply(connection, request, nullptr));
  return atom ? atom->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// Whether a window manager has marked the window, or one inside it, as in its care.
bool isManaged(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t state, int depth) {
  const auto request = xcb_get_property(connection, 0, window, state, XCB_ATOM_ANY, 0, 0);
  const auto property = answer(xcb_get_property_reply(connection, request, nullptr));
  if (property && property->type != XCB_ATOM_NONE) return true;
  if (depth == 0) return false;
  for (const xcb_window_t child : childrenOf(connection, window)) {
    if (isManaged(connection, child, state, depth - 1)) return true;
  }
  return false;
}

/// The place of a window that is seen and that the window manager leaves alone; empty otherwise.
QRect placeOfUnmanaged(xcb_connection_t* connection, xcb_window_t window) {
  const auto attributesRequest = xcb_get_window_attributes(connection, window);
  const auto placeRequest = xcb_get_geometry(connection, window);
  const auto attributes =
      answer(xcb_get_window_attributes_reply(connection, attributesRequest, nullptr));
  const auto place = answer(xcb_get_geometry_reply(connection, placeRequest, nullptr));
  if (!attributes || !place || attributes->override_redirect == 0 ||
      attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
      attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT) {
    return {};
  }
  return {place->x, place->y, place->width, place->height};
}

/// All screens, in pixels.
QRegion screens() {
  QRegion all;
  for (const QScreen* screen : QGuiApplication::screens()) {
    // Only the size is in points.
    const QSizeF size = QSizeF(screen->geometry().size()) * screen->devicePixelRatio();
    all += QRect(screen->geometry().topLeft(), size.toSize())
               .adjusted(margin, margin, -margin, -margin);
  }
  return all;
}

}  // namespace

LockSignsOnX11::LockSignsOnX11() {
  int screenNumber = 0;
  connection_.reset(xcb_connect(nullptr, &screenNumber));
  if (xcb_connection_has_error(connection_.get()) != 0) {
    connection_.reset();
    return;
  }
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screenNumber > 0; --screenNumber) xcb_screen_next(&screen);
  root_ = screen.data->root;
  unmapped_ = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, unmapped_, root_, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

LockSigns LockSignsOnX11::look() const {
  if (!connection_ || !keyboardIsHeld()) return {};
  return {.keyboardIsHeld = true, .screensAreCovered = screensAreCovered()};
}

bool LockSignsOnX11::keyboardIsHeld() const {
  // No window that is not seen can get the keyboard. The server looks first whether somebody else
  // has it, so the refusal tells that, and nothing has changed.
  const auto request = xcb_grab_keyboard(connection_.get(), 0, unmapped_, XCB_CURRENT_TIME,
                                         XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  const auto refusal = answer(xcb_grab_keyboard_reply(connection_.get(), request, nullptr));
  return refusal && refusal->status == XCB_GRAB_STATUS_ALREADY_GRABBED;
}

bool LockSignsOnX11::screensAreCovered() const {
  QRegion open = screens();
  if (open.isEmpty()) return false;
  const xcb_atom_t state = stateProperty(connection_.get());
  for (const xcb_window_t window : childrenOf(connection_.get(), root_)) {
    const QRect place = placeOfUnmanaged(connection_.get(), window);
    if (open.intersects(place) && !isManaged(connection_.get(), window, state, deepestFrame)) {
      open -= place;
    }
  }
  return open.isEmpty();
}

}  // namespace vorrin
