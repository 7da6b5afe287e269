#include "input_helper/connection.h"

#include <sys/sysmacros.h>

#include <chrono>
#include <string>
#include <tuple>
#include <utility>
#include <variant>

#include "input_helper/log.h"
#include "input_helper/protocol/packet_socket.h"
#include "input_helper/watchdog.h"

namespace vorrin::input_helper {

using namespace helper_protocol;

namespace {

Moment now() {
  return std::chrono::steady_clock::now();
}

KeyboardId idOf(dev_t number) {
  return static_cast<KeyboardId>(minor(number));
}

}  // namespace

Connection::Connection(sd_event* loop, FileDescriptor socket, Uinput& uinput,
                       std::function<void()> ended)
    : loop_(loop),
      socket_(std::move(socket)),
      uinput_(uinput),
      ended_(std::move(ended)),
      filter_(filterActions()),
      packets_(loop, socket_.get(), Priority::others, handler([this] { readPacket(); })),
      deadline_(
          Awaited::timer(loop, Priority::keyboards, handler([this] { filter_.advance(now()); }))) {}

Connection::~Connection() {
  letGo();
  closeDevices();
}

/// What every turn of the event loop does here.
Awaited::Handler Connection::handler(std::function<void()> serve) {
  return [this, serve = std::move(serve)] {
    if (!hasEnded_) serve();
    deadline_.setTime(hasEnded_ ? std::nullopt : filter_.nextDeadline());
  };
}

FilterActions Connection::filterActions() {
  return {
      .grab =
          [this](KeyboardId id) {
            return hasEnded_ ? GrabResult{} : keyboards_.at(id).keyboard.grab();
          },
      .ungrab = [this](KeyboardId id) { return keyboards_.at(id).keyboard.ungrab(); },
      .emit = [this](KeyboardId id,
                     std::span<const InputEvent> frame) { keyboards_.at(id).keyboard.emit(frame); },
      .send = [this](const FromHelper& message) { send(message); },
      .panic = [this] { end(EndReason::panicChord); },
  };
}

/// The kernel gives the keyboards back at once; only taking the devices away, which releases what
/// is held on them, takes it a while.
void Connection::letGo() {
  for (const auto& [id, entry] : keyboards_) std::ignore = entry.keyboard.ungrab();
}

void Connection::end(EndReason reason) {
  letGo();
  if (hasEnded_) return;
  send(Ending{reason});
  endBecause(describe(reason));
}

void Connection::endBecause(const char* words) {
  letGo();
  if (std::exchange(hasEnded_, true)) return;
  // What is not read any more would be ready for ever, and keep everything else from its turn.
  for (auto& [id, entry] : keyboards_) {
    entry.keys = {};
    entry.lights = {};
  }
  news_ = {};
  packets_ = {};
  socket_ = {};
  log(words);
  ended_();
}

void Connection::send(const FromHelper& message) {
  if (hasEnded_ || sendPacket(socket_.get(), encode(message))) return;
  endBecause("the main program is gone or reads nothing");
}

void Connection::setAtWork(bool isAtWork) {
  if (!isAtWork) letGo();
  if (std::exchange(isAtWork_, isAtWork) == isAtWork || hasEnded_) return;
  if (isAtWork) return openDevices();
  closeDevices();
  send(Availability{Listening::sessionAway});
}

void Connection::openDevices() {
  auto devices = MacroDevices::create(uinput_);
  if (!devices) return end(EndReason::noDevices);
  devices_.emplace(std::move(*devices));
  notices_ = watchEventDevices();
  news_ = Awaited(loop_, notices_.get(), Priority::others,
                  [this] { readNews(notices_, [this](dev_t number) { follow(number); }); });
  for (const auto& device : allEventDevices()) consider(device);
  log("it passes " + std::to_string(keyboards_.size()) + " keyboards on");
  filter_.announce(now());
  deadline_.setTime(filter_.nextDeadline());
}

void Connection::consider(const EventDevice& device) {
  const auto id = idOf(device.number);
  if (device.seat != firstSeat || keyboards_.contains(id)) return;
  // A machine with many devices takes a while over them.
  beat();
  auto keyboard = PhysicalKeyboard::open(device, uinput_);
  if (!keyboard) return;
  const int keys = keyboard->deviceNumber();
  const int lights = keyboard->cloneNumber();
  filter_.addKeyboard(id, keyboard->keysDown(), now());
  keyboards_.emplace(
      id,
      Keyboard{std::move(*keyboard),
               Awaited(loop_, keys, Priority::keyboards, handler([this, id] { readKeyboard(id); })),
               Awaited(loop_, lights, Priority::others,
                       [this, id] { keyboards_.at(id).keyboard.copyLights(); })});
}

void Connection::follow(dev_t number) {
  const auto device = findEventDevice(number);
  if (device && device->seat == firstSeat) return consider(*device);
  if (keyboards_.contains(idOf(number))) remove(idOf(number));
}

void Connection::closeDevices() {
  filter_.removeAll();
  news_ = {};
  notices_ = {};
  while (!keyboards_.empty()) {
    beat();
    keyboards_.erase(keyboards_.begin());
  }
  devices_.reset();
}

void Connection::remove(KeyboardId id) {
  std::ignore = keyboards_.at(id).keyboard.ungrab();
  filter_.removeKeyboard(id, now());
  keyboards_.erase(id);
}

/// One that lost events is taken up anew, with what is down on it by then.
void Connection::readKeyboard(KeyboardId id) {
  if (keyboards_.at(id).keyboard.read(filter_, id) || hasEnded_) return;
  remove(id);
  follow(makedev(inputMajor, static_cast<unsigned>(id)));
}

/// One at a time: between two packets the keyboards come first.
void Connection::readPacket() {
  Packet packet;
  const auto received = receivePacket(socket_.get(), packet);
  if (received == Received::nothing) return;
  if (received == Received::end) return endBecause("the main program is gone");
  const auto message = decodeToHelper(packet.view());
  if (!message) return endBecause("the main program said something without a meaning");
  obey(*message);
}

void Connection::obey(const ToHelper& message) {
  // What was meant for keyboards that are given back by now counts no more.
  if (!devices_) return;
  if (const auto* verdict = std::get_if<Verdict>(&message)) {
    filter_.answer(*verdict, now());
  } else if (const auto* configuration = std::get_if<Configure>(&message)) {
    filter_.configure(*configuration, now());
  } else if (const auto* post = std::get_if<Post>(&message)) {
    devices_->post(*post);
  }
}

}  // namespace vorrin::input_helper
