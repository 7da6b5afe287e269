#include "platform/linux/input/x11/tap.h"

#include <algorithm>
#include <utility>

#include "platform/linux/foundation/xcb_reply.h"

namespace vorrin::x11 {

namespace {

template <class Event>
const Event& as(const auto& event) {
  return reinterpret_cast<const Event&>(event);
}

}  // namespace

std::unique_ptr<Tap> Tap::create(std::uint64_t mask, EventTap::Callback callback,
                                 std::function<void()> invalidated) {
  auto connection = Connection::open();
  if (!connection) return nullptr;
  auto tap = std::make_unique<Tap>(*std::move(connection), mask, callback, std::move(invalidated));
  return tap->map_.isThere() ? std::move(tap) : nullptr;
}

Tap::Tap(Connection connection, std::uint64_t mask, EventTap::Callback callback,
         std::function<void()> invalidated)
    : connection_(std::move(connection)),
      mask_(mask),
      callback_(callback),
      invalidated_(std::move(invalidated)),
      map_(connection_),
      poster_(connection_),
      grabs_(connection_),
      flow_(grabs_, map_, poster_, connection_.sharesClock(), [this](const TapEvent& event) {
        return wants(event.type) ? callback_(event) : TapVerdict::pass;
      }) {}

Tap::~Tap() {
  watch_.reset();
  // The release of a key that was cut off by a shortcut a moment ago reaches nobody but us. Left
  // unread, the key would stay down for other programs.
  static_cast<void>(flow_.claim({}));
  flow_.endGrabs();
  connection_.sync();
  do mapChanged_ = false;
  while (readAll(&xcb_poll_for_event));
  flow_.leaveAll();
  // What the server has not read when the connection ends, it gives up.
  connection_.sync();
}

void Tap::addToMainRunLoop() {
  if (!watch_) watch_.emplace(connection_.get(), std::bind_front(&Tap::serve, this));
}

bool Tap::claim(std::span<const std::uint16_t> virtualKeys) {
  return flow_.claim(virtualKeys) && !connection_.lost();
}

bool Tap::canClaim(std::span<const std::uint16_t> virtualKeys) const {
  return flow_.canClaim(virtualKeys) && !connection_.lost();
}

void Tap::post(std::span<const SyntheticEvent> events) {
  for (const SyntheticEvent& event : events) {
    const bool isKey = event.type == EventType::keyDown || event.type == EventType::keyUp;
    const bool isButton =
        event.type == EventType::leftMouseDown || event.type == EventType::leftMouseUp;
    if (isButton) poster_.leftButton(event.type == EventType::leftMouseDown);
    const auto code = isKey ? map_.keycode(event.keyCode) : xcb_keycode_t{0};
    if (code == 0) continue;
    const bool down = event.type == EventType::keyDown;
    flow_.watches(code) ? poster_.knownKey(code, down) : poster_.key(code, down);
  }
  connection_.flush();
}

void Tap::serve(NextEvent next) {
  while (readAll(next) || flow_.judgeNext()) {
    flow_.endGrabs();
    connection_.flush();
    followChanges();
  }
  endIfUseless();
}

bool Tap::readAll(NextEvent next) {
  bool any = false;
  // What follows a change of the map was typed with the new one.
  while (!mapChanged_) {
    const auto event = ownReply(next(connection_.get()));
    if (!event) break;
    read(*event);
    any = true;
  }
  return any;
}

void Tap::read(const xcb_generic_event_t& event) {
  constexpr std::uint8_t withoutSender = 0x7F;
  const std::uint8_t type = event.response_type & withoutSender;
  if (type == connection_.xkbEvent()) mapChanged_ = !map_.follow(event) || mapChanged_;
  const auto& input = as<xcb_ge_generic_event_t>(event);
  if (type != XCB_GE_GENERIC || input.extension != connection_.inputExtension()) return;
  switch (input.event_type) {
    case XCB_INPUT_RAW_KEY_PRESS:
    case XCB_INPUT_RAW_KEY_RELEASE:
      return flow_.readRaw(as<xcb_input_raw_key_press_event_t>(event));
    case XCB_INPUT_KEY_PRESS:
    case XCB_INPUT_KEY_RELEASE:
      return flow_.readCaught(as<xcb_input_key_press_event_t>(event));
    case XCB_INPUT_HIERARCHY:
      keyboardsChanged_ = true;
      return;
    default:
      return;
  }
}

void Tap::followChanges() {
  if (std::exchange(mapChanged_, false)) {
    map_.read();
    refused_ = !flow_.claimAgain() || refused_;
  }
  if (std::exchange(keyboardsChanged_, false)) followKeyboards();
}

void Tap::followKeyboards() {
  const auto former = grabs_.keyboards();
  refused_ = !grabs_.rescan() || refused_;
  for (const Device device : former) {
    const bool isGone = std::ranges::count(grabs_.keyboards(), device) == 0;
    if (isGone) flow_.leave(device);
  }
  connection_.flush();
}

void Tap::endIfUseless() {
  if (!connection_.lost() && !refused_) return;
  if (watch_) watch_->closeSocket();
  // The call may make the tap go away.
  const auto invalidated = std::exchange(invalidated_, nullptr);
  if (invalidated) invalidated();
}

bool Tap::wants(EventType type) const {
  return enabled_ && ((mask_ >> static_cast<unsigned>(type)) & 1U) != 0;
}

}  // namespace vorrin::x11
