#include "platform/linux/input/x11/tap.h"

#include <QAbstractEventDispatcher>
#include <QSocketNotifier>
#include <utility>

#include "platform/fatal_error.h"
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
      grabs_(connection_, map_),
      flow_(grabs_, map_, poster_, [this](const TapEvent& event) {
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

void Tap::EndWatch::operator()(QSocketNotifier* watch) const {
  watch->setEnabled(false);
  const auto* const loop = QAbstractEventDispatcher::instance();
  if (loop != nullptr) QObject::disconnect(loop, nullptr, watch, nullptr);
  watch->deleteLater();
}

void Tap::addToMainRunLoop() {
  const auto* const loop = QAbstractEventDispatcher::instance();
  precondition(loop != nullptr, "the main loop exists");
  const auto socket = xcb_get_file_descriptor(connection_.get());
  watch_.reset(new QSocketNotifier(socket, QSocketNotifier::Read));
  QObject::connect(watch_.get(), &QSocketNotifier::activated, watch_.get(),
                   [this] { serve(&xcb_poll_for_event); });
  // A reply takes along the events before it, and a flush may: they are in memory then, and the
  // socket stays silent.
  QObject::connect(loop, &QAbstractEventDispatcher::aboutToBlock, watch_.get(),
                   [this] { serve(&xcb_poll_for_queued_event); });
}

bool Tap::claim(std::span<const std::uint16_t> virtualKeys) {
  return flow_.claim(virtualKeys) && !connection_.lost();
}

bool Tap::canClaim(std::span<const std::uint16_t> virtualKeys) const {
  return flow_.canClaim(virtualKeys) && !connection_.lost();
}

void Tap::post(std::span<const SyntheticEvent> events) {
  for (const SyntheticEvent& event : events) {
    const bool down = event.type == EventType::keyDown || event.type == EventType::leftMouseDown;
    if (event.type == EventType::leftMouseDown || event.type == EventType::leftMouseUp) {
      poster_.leftButton(down);
    } else if (const auto code = map_.keycode(event.keyCode)) {
      poster_.key(code, down);
    }
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
  if (!std::exchange(keyboardsChanged_, false)) return;
  refused_ = !grabs_.rescan() || refused_;
  flow_.leaveLost();
  connection_.flush();
}

void Tap::endIfUseless() {
  if (!connection_.lost() && !refused_) return;
  // The socket would be readable for ever after its end.
  watch_.reset();
  // The call may make the tap go away.
  const auto invalidated = std::exchange(invalidated_, nullptr);
  if (invalidated) invalidated();
}

bool Tap::wants(EventType type) const {
  return enabled_ && ((mask_ >> static_cast<unsigned>(type)) & 1U) != 0;
}

}  // namespace vorrin::x11
