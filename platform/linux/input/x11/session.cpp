#include "platform/linux/input/x11/session.h"

#include <array>
#include <utility>

namespace vorrin::x11 {

Session::Session(std::unique_ptr<Connection> connection, std::unique_ptr<Clicker> clicker)
    : connection_(std::move(connection)),
      clicker_(std::move(clicker)),
      keeper_(std::array{ConnectionNumber(connection_->display()), clicker_->descriptor()}),
      poster_(*connection_) {
  map_.read(connection_->display());
  connection_->onLoss([this] {
    if (watch_) watch_->closeDescriptor();
    checkLater();
  });
}

Session::~Session() {
  connection_->onLoss({});
}

std::shared_ptr<Listener> Session::listen(std::uint64_t mask, EventTap::Callback callback,
                                          std::function<void()> invalidated) {
  if (lost() || listener_) return nullptr;
  listener_ = std::make_shared<Listener>(*connection_, poster_, map_, mask, callback);
  invalidated_ = std::move(invalidated);
  return listener_;
}

void Session::endListening(const Listener& listener) {
  if (listener_.get() != &listener) return;
  listener_->end();
  listener_ = nullptr;
  invalidated_ = nullptr;
}

void Session::watch() {
  if (lost() || watch_) return;
  watch_.emplace(
      ConnectionNumber(connection_->display()), [this] { serve(); },
      [this] { return isWaiting(); });
  checkLater();
}

void Session::checkLater() {
  if (watch_) watch_->wake();
}

void Session::post(std::span<const SyntheticEvent> events) {
  bool hasKeys = false;
  bool hasClicks = false;
  for (const SyntheticEvent& event : events) {
    switch (event.type) {
      case EventType::keyDown:
      case EventType::keyUp: {
        const KeyCode keycode = map_.keycode(event.keyCode);
        if (keycode == 0) break;
        poster_.key(keycode, event.type == EventType::keyDown,
                    {Post::Reason::posted, event.userData});
        hasKeys = true;
        break;
      }
      case EventType::leftMouseDown:
      case EventType::leftMouseUp:
        clicker_->leftButton(event.type == EventType::leftMouseDown);
        hasClicks = true;
        break;
      case EventType::tapDisabledByTimeout:
      case EventType::tapDisabledByUserInput:
        break;
    }
  }
  // To flush is to ask the kernel for news as well, for nothing where nothing was sent.
  if (hasKeys) poster_.flush();
  if (hasClicks) clicker_->flush();
}

void Session::serve() {
  // The callback may run the main loop itself. Its events must wait, or they would overtake this.
  if (serving_) return;
  serving_ = true;
  handleEvents();
  serving_ = false;
  if (!listener_ || !(lost() || listener_->failed())) return;
  const std::function<void()> invalidated = std::move(invalidated_);
  endListening(*listener_);
  if (invalidated) invalidated();
}

bool Session::isWaiting() const {
  if (lost() || (listener_ && listener_->failed())) return true;
  return XEventsQueued(connection_->display(), QueuedAlready) > 0;
}

void Session::handleEvents() {
  Display* const display = connection_->display();
  while (!lost()) {
    // Kept here because the callback may drop the tap.
    const std::shared_ptr<Listener> listener = listener_;
    if (listener && listener->failed()) return;
    if (XPending(display) > 0) {
      XEvent event;
      XNextEvent(display, &event);
      if (!lost() && listener) listener->handle(event);
    } else if (!lost() && listener && listener->hasNext()) {
      listener->serveNext();
    } else {
      return;
    }
  }
}

}  // namespace vorrin::x11
