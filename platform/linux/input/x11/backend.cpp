#include "platform/linux/input/x11/backend.h"

#include <utility>

#include "platform/linux/input/x11/session.h"

namespace vorrin::x11 {

Tap::Tap(std::shared_ptr<Session> session, std::shared_ptr<Listener> listener)
    : session_(std::move(session)), listener_(std::move(listener)) {}

Tap::~Tap() {
  session_->endListening(*listener_);
}

void Tap::addToMainRunLoop() {
  session_->watch();
}

void Tap::setEnabled(bool enabled) {
  listener_->setEnabled(enabled);
  session_->checkLater();
}

bool Tap::claim(std::span<const std::uint16_t> keyCodes) {
  return listener_->claim(keyCodes);
}

bool Tap::canClaim(std::span<const std::uint16_t> keyCodes) {
  return listener_->canClaim(keyCodes);
}

bool Backend::connect() {
  if (session_) return !session_->lost();
  std::unique_ptr<Connection> connection = Connection::open();
  std::unique_ptr<Clicker> clicker = Clicker::open();
  if (connection && clicker) {
    session_ = std::make_shared<Session>(std::move(connection), std::move(clicker));
  }
  return session_ != nullptr;
}

std::unique_ptr<Tap> Backend::createTap(std::uint64_t mask, EventTap::Callback callback,
                                        std::function<void()> invalidated) {
  if (!connect()) return nullptr;
  std::shared_ptr<Listener> listener = session_->listen(mask, callback, std::move(invalidated));
  if (!listener) return nullptr;
  return std::make_unique<Tap>(session_, std::move(listener));
}

std::optional<PointerLocation> Backend::pointerLocation() {
  return PointerLocation{};
}

void Backend::post(std::span<const SyntheticEvent> events) {
  if (session_) session_->post(events);
}

}  // namespace vorrin::x11
