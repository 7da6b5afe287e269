#include "fake_helper.h"

#include <sys/socket.h>

#include <utility>

namespace vorrin::helper {

using namespace helper_protocol;

CallHelper FakeHelper::service() {
  return [this](QObject&, const std::string& method, bool mayAsk,
                const std::function<void(Reply)>& answered) {
    const bool isConnect = method == connectMethod;
    calls_.push_back(!isConnect ? method : mayAsk ? "ask" : "connect");
    if (!isConnect) return answered({});
    pending_ = [this, mayAsk, answered] { answered(connect(mayAsk)); };
    if (!isSilent) answer();
  };
}

Reply FakeHelper::connect(bool mayAsk) {
  if (!isAllowed) return {mayAsk ? "asked in vain" : "not allowed", {}};
  auto ends = makeSocketPair();
  connection_ = isGone ? FileDescriptor() : std::move(ends->second);
  return {{}, std::move(ends->first)};
}

std::string bytesOf(const FromHelper& message) {
  const auto packet = encode(message);
  return {reinterpret_cast<const char*>(packet.bytes.data()), packet.size};
}

void FakeHelper::say(const FromHelper& message) {
  sayBytes(bytesOf(message));
}

void FakeHelper::sayBytes(const std::string& bytes) {
  // An end that is closed already is what some tests wait for.
  [[maybe_unused]] const auto sent =
      ::send(connection_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
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
