#include "fake_helper.h"

#include <sys/socket.h>

#include <utility>

namespace vorrin::helper {

using namespace helper_protocol;

HelperService FakeHelper::service() {
  return {.connect =
              [this](QObject&, bool mayAsk, std::function<void(Connected)> answered) {
                calls_.emplace_back(mayAsk ? "ask" : "connect");
                pending_ = [this, mayAsk, answered] { answered(connect(mayAsk)); };
                if (!isSilent) answer();
              },
          .decide =
              [this](QObject&, const char* wish, std::function<void(bool)> answered) {
                calls_.emplace_back(wish);
                answered(true);
              }};
}

Connected FakeHelper::connect(bool mayAsk) {
  if (!isAllowed) return {{}, mayAsk ? "asked in vain" : "not allowed"};
  auto ends = makeSocketPair();
  connection_ = isGone ? FileDescriptor() : std::move(ends->second);
  return {std::move(ends->first), {}};
}

void FakeHelper::say(const FromHelper& message) {
  const auto packet = encode(message);
  sayBytes({reinterpret_cast<const char*>(packet.bytes.data()), packet.size});
}

void FakeHelper::sayBytes(const std::string& bytes) {
  // An end that is closed already is what some tests wait for.
  [[maybe_unused]] const auto sent =
      ::send(connection_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void FakeHelper::serve(Listening listening) {
  say(Hello{});
  say(Availability{listening});
}

std::vector<ToHelper> FakeHelper::heard() {
  std::vector<ToHelper> messages;
  Packet packet;
  while (receivePacket(connection_.get(), packet) == Received::packet) {
    if (const auto message = decodeToHelper(packet.view())) messages.push_back(*message);
  }
  return messages;
}

bool FakeHelper::isLeft() {
  Packet packet;
  Received received = Received::packet;
  while (received == Received::packet) received = receivePacket(connection_.get(), packet);
  return received == Received::end;
}

}  // namespace vorrin::helper
