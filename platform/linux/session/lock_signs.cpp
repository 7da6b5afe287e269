#include "platform/linux/session/lock_signs.h"

#include <xcb/xcbext.h>

#include <QGuiApplication>
#include <QRegion>
#include <QScreen>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string_view>
#include <utility>
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

xcb_atom_t atomOf(xcb_connection_t* connection, std::string_view name) {
  const auto request =
      xcb_intern_atom(connection, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const auto atom = answer(xcb_intern_atom_reply(connection, request, nullptr));
  return atom ? atom->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

/// The items of a window's property, all of 32 bits; none when it has no such property.
std::vector<std::uint32_t> items(xcb_connection_t* connection, xcb_window_t window,
                                 std::string_view name) {
  constexpr std::uint32_t most = 4096;
  const auto request =
      xcb_get_property(connection, 0, window, atomOf(connection, name), XCB_ATOM_ANY, 0, most);
  const auto property = answer(xcb_get_property_reply(connection, request, nullptr));
  if (!property || property->format != 32) return {};
  const auto* const first =
      static_cast<const std::uint32_t*>(xcb_get_property_value(property.get()));
  return {first, first + property->value_len};
}

bool contains(const std::vector<std::uint32_t>& all, std::uint32_t one) {
  return std::find(all.begin(), all.end(), one) != all.end();
}

/// Whether one program has made both windows.
bool areOfOneClient(xcb_connection_t* connection, xcb_window_t one, xcb_window_t other) {
  return ((one ^ other) & ~xcb_get_setup(connection)->resource_id_mask) == 0;
}

/// Whether the window is shown, has at least this size, and is not the desktop itself.
bool isOrdinaryAndCovers(xcb_connection_t* connection, xcb_window_t window, const QSize& size) {
  const auto attributesRequest = xcb_get_window_attributes(connection, window);
  const auto placeRequest = xcb_get_geometry(connection, window);
  const auto attributes =
      answer(xcb_get_window_attributes_reply(connection, attributesRequest, nullptr));
  const auto place = answer(xcb_get_geometry_reply(connection, placeRequest, nullptr));
  return attributes && place && attributes->map_state == XCB_MAP_STATE_VIEWABLE &&
         place->width >= size.width() && place->height >= size.height() &&
         !contains(items(connection, window, "_NET_WM_WINDOW_TYPE"),
                   atomOf(connection, "_NET_WM_WINDOW_TYPE_DESKTOP"));
}

/// Whether `cover` belongs to a game of the older kind. To fill the screen it lays a window of its
/// own over everything, as a locker does, but keeps its ordinary window, in that size, below. No
/// locker shows such a window. A window manager that locks the screen itself might.
bool isOfGame(xcb_connection_t* connection, xcb_window_t root, xcb_window_t cover,
              const QSize& size) {
  const auto isOfCoversClient = [&](xcb_window_t window) {
    return areOfOneClient(connection, window, cover);
  };
  const auto managers = items(connection, root, "_NET_SUPPORTING_WM_CHECK");
  if (std::any_of(managers.begin(), managers.end(), isOfCoversClient)) return false;
  const auto managed = items(connection, root, "_NET_CLIENT_LIST");
  return std::any_of(managed.begin(), managed.end(), [&](xcb_window_t window) {
    return isOfCoversClient(window) && isOrdinaryAndCovers(connection, window, size);
  });
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
  connection_ = x11::openQuietConnection(screenNumber);
  if (!connection_) return;
  auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get()));
  for (; screenNumber > 0; --screenNumber) xcb_screen_next(&screen);
  root_ = screen.data->root;
  unmapped_ = xcb_generate_id(connection_.get());
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, unmapped_, root_, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
}

LockSigns LockSignsOnX11::look() {
  ask();
  const auto request = std::exchange(asked_, std::nullopt);
  if (!request) return {};
  return read(answer(xcb_grab_keyboard_reply(connection_.get(), *request, nullptr)).get());
}

void LockSignsOnX11::ask() {
  if (!connection_) return;
  if (asked_) xcb_discard_reply(connection_.get(), asked_->sequence);
  // No window that is not seen can get the keyboard. The server looks first whether somebody else
  // has it, so the refusal tells that, and nothing has changed.
  asked_ = xcb_grab_keyboard(connection_.get(), 0, unmapped_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC,
                             XCB_GRAB_MODE_ASYNC);
  xcb_flush(connection_.get());
}

std::optional<LockSigns> LockSignsOnX11::answered() {
  if (!asked_) return LockSigns{};
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(connection_.get(), asked_->sequence, &reply, &error) == 0)
    return std::nullopt;
  asked_.reset();
  std::free(error);
  return read(answer(static_cast<xcb_grab_keyboard_reply_t*>(reply)).get());
}

LockSigns LockSignsOnX11::read(const xcb_grab_keyboard_reply_t* refusal) const {
  if (refusal == nullptr || refusal->status != XCB_GRAB_STATUS_ALREADY_GRABBED) return {};
  return {.keyboardIsHeld = true, .screensAreCovered = screensAreCovered()};
}

bool LockSignsOnX11::screensAreCovered() const {
  QRegion open = screens();
  if (open.isEmpty()) return false;
  const xcb_atom_t state = atomOf(connection_.get(), "WM_STATE");
  for (const xcb_window_t window : childrenOf(connection_.get(), root_)) {
    const QRect place = placeOfUnmanaged(connection_.get(), window);
    if (open.intersects(place) && !isManaged(connection_.get(), window, state, deepestFrame) &&
        !isOfGame(connection_.get(), root_, window, place.size())) {
      open -= place;
    }
  }
  return open.isEmpty();
}

}  // namespace vorrin
