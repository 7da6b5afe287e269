#include "platform/linux/input/helper/backend.h"

#include <sys/socket.h>

#include <QGuiApplication>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <utility>
#include <variant>

#include "platform/linux/input/key_codes.h"

namespace vorrin::helper {

using namespace helper_protocol;

namespace {

/// How long the login manager may take to say that the user is back, who is.
constexpr int patienceSeconds = 3;

void log(const std::string& line) {
  std::fprintf(stderr, "vorrin: %s\n", line.c_str());
}

std::optional<PostedKey> postedKey(const SyntheticEvent& event) {
  const bool down = event.type == EventType::keyDown || event.type == EventType::leftMouseDown;
  const bool isButton =
      event.type == EventType::leftMouseUp || event.type == EventType::leftMouseDown;
  if (isButton) return PostedKey{0, down};
  const auto key = evdevCode(event.keyCode);
  if (!key || !isDigitKey(*key)) return std::nullopt;
  return PostedKey{static_cast<std::uint8_t>(*key), down};
}

/// Not deleted at once: it may be telling of the very message that ends the connection.
void deleteLater(QSocketNotifier* notifier) {
  notifier->setEnabled(false);
  notifier->deleteLater();
}

}  // namespace

Backend::Backend(CallHelper call) : call_(std::move(call)), notifier_(nullptr, deleteLater) {
  QObject::connect(&everySecond_, &QTimer::timeout, &context_, [this] { lookAgain(); });
}

Backend::~Backend() {
  // The tap may live longer; it is not to be told of an end that the program itself brings about.
  if (const auto tap = tap_.lock()) tap->end();
}

bool Backend::isTrustedWithPrompt() {
  isWanted_ = true;
  mayAsk_ = true;
  everySecond_.start(std::chrono::seconds(1));
  reach();
  return isTrusted();
}

void Backend::lookAgain() {
  // Not every screen locker tells the login manager that it is done. The user is seen to be back,
  // but only a helper that asks the login manager anew may believe it.
  const bool isSeen = QGuiApplication::applicationState() == Qt::ApplicationActive;
  secondsAway_ = isSeen && listening_ == Listening::sessionAway ? secondsAway_ + 1 : 0;
  if (secondsAway_ > patienceSeconds) lose();
  if (isWanted_) reach();
}

void Backend::reach() {
  if (socket_.isOpen() || isReaching_) return;
  isReaching_ = true;
  const bool asks = std::exchange(mayAsk_, false);
  call_(context_, connectMethod, asks, [this](Reply reply) { take(std::move(reply)); });
}

void Backend::take(Reply reply) {
  isReaching_ = false;
  if (!isWanted_) return;
  if (!reply.socket.isOpen()) {
    if (std::exchange(refusal_, reply.refusal) != reply.refusal) {
      log("no input helper: " + refusal_);
    }
    // The user wished for it while it was being asked without a question.
    if (mayAsk_) reach();
    return;
  }
  refusal_.clear();
  socket_ = std::move(reply.socket);
  notifier_.reset(new QSocketNotifier(socket_.get(), QSocketNotifier::Read));
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, &context_, [this] { read(); });
}

void Backend::read() {
  Packet packet;
  // What is called may end the connection, or bring another.
  for (const int socket = socket_.get(); socket_.isOpen() && socket_.get() == socket;) {
    const auto received = receivePacket(socket, packet);
    if (received == Received::nothing) return;
    if (received == Received::end) return lose();
    const auto message = decodeFromHelper(packet.view());
    if (!message) {
      log("the input helper said something that has no meaning; the connection is closed");
      // It will be the same the next time.
      isWanted_ = false;
      return lose();
    }
    receive(*message);
  }
}

void Backend::receive(const FromHelper& message) {
  if (const auto* availability = std::get_if<Availability>(&message)) {
    listen(availability->listening);
  } else if (const auto* moved = std::get_if<KeyMoved>(&message)) {
    tell(*moved);
  } else if (const auto* ending = std::get_if<Ending>(&message)) {
    followEnd(ending->reason);
  } else if (const auto tap = tap_.lock()) {
    log("a shortcut passed, because Vorrin did not answer in time; both macros are off");
    tap->tellDisabled();
  }
}

void Backend::listen(Listening listening) {
  if (listening == Listening::keyboardTaken) {
    log("another program holds a keyboard; Vorrin waits until it lets go");
  }
  listening_ = listening;
  if (listening == Listening::possible) return;
  if (const auto tap = tap_.lock()) tap->invalidate();
}

void Backend::tell(const KeyMoved& moved) {
  const auto tap = tap_.lock();
  const bool swallow = tap && tap->tell(moved) == TapVerdict::swallow;
  if (moved.question == 0) return;
  // The callback may have ended the connection.
  if (socket_.isOpen() && !send(Verdict{moved.question, swallow})) lose();
}

void Backend::followEnd(EndReason reason) {
  log(describe(reason));
  // The user did not want it, or it would end again.
  isWanted_ = reason != EndReason::panicChord && reason != EndReason::noDevices;
  lose();
}

void Backend::lose() {
  notifier_.reset();
  socket_ = {};
  listening_.reset();
  if (const auto tap = tap_.lock()) tap->invalidate();
}

void Backend::allowForGood() {
  call_(context_, "AllowForGood", true, [this](const Reply& reply) {
    if (reply.refusal.empty()) isTrustedWithPrompt();
  });
}

void Backend::askEveryTime() {
  call_(context_, "AskEveryTime", true, [](const Reply&) {});
}

void Backend::takeBack() {
  isWanted_ = false;
  lose();
  call_(context_, "TakeBack", true, [](const Reply& reply) {
    if (!reply.refusal.empty()) log("the permission could not be taken back");
  });
}

std::shared_ptr<Tap> Backend::createTap(std::uint64_t mask, EventTap::Callback callback,
                                        std::function<void()> invalidated) {
  if (listening_ != Listening::possible) return nullptr;
  const auto tap =
      std::make_shared<Tap>(mask, callback, std::move(invalidated),
                            [this](const Configure& configuration) { configure(configuration); });
  tap_ = tap;
  return tap;
}

void Backend::configure(const Configure& configuration) {
  if (!socket_.isOpen() || send(configuration)) return;
  // Not within the call of the tap that has something new; the next thing read is the end.
  ::shutdown(socket_.get(), SHUT_RDWR);
}

bool Backend::send(const ToHelper& message) const {
  return sendPacket(socket_.get(), encode(message));
}

void Backend::post(std::span<const SyntheticEvent> events) const {
  if (!listening_) return;
  while (!events.empty()) {
    Post post;
    const auto batch = events.first(std::min(events.size(), maximumPosts));
    for (const auto& event : batch) {
      if (const auto key = postedKey(event)) post.keys[post.count++] = *key;
    }
    events = events.subspan(batch.size());
    [[maybe_unused]] const bool taken = send(post);
  }
}

}  // namespace vorrin::helper
