#include "fake_helper.h"

#include <sys/socket.h>
#include <unistd.h>

#include <utility>

namespace vorrin::helper {

using namespace helper_protocol;

HelperStart FakeHelper::start() {
  return {.devicesAreOpen = [this] { return devicesAreOpen; },
          .askPermission = [this](QObject&,
                                  const std::function<void(bool)>& answered) { answered(allowed); },
          .start = [this](StartWay way, const FileDescriptor& end,
                          std::function<void(int)> ended) -> std::shared_ptr<void> {
            starts_.push_back(way);
            if (isMissing) return nullptr;
            connection_ = isGone ? FileDescriptor() : FileDescriptor(::dup(end.number()));
            ended_ = std::move(ended);
            return std::make_shared<int>();
          }};
}

void FakeHelper::say(const FromHelper& message) {
  const auto packet = encode(message);
  sayBytes({reinterpret_cast<const char*>(packet.bytes.data()), packet.size});
}

void FakeHelper::sayBytes(const std::string& bytes) {
  // An end that is closed already is what some tests wait for.
  [[maybe_unused]] const auto sent =
      ::send(connection_.number(), bytes.data(), bytes.size(), MSG_NOSIGNAL);
}

void FakeHelper::serve(bool available) {
  say(Hello{});
  say(Availability{available});
}

void FakeHelper::end(int status) {
  hangUp();
  if (const auto ended = std::exchange(ended_, nullptr)) ended(status);
}

std::vector<ToHelper> FakeHelper::heard() {
  std::vector<ToHelper> messages;
  Packet packet;
  while (receivePacket(connection_.number(), packet) == Received::packet) {
    if (const auto message = decodeToHelper(packet.view())) messages.push_back(*message);
  }
  return messages;
}

bool FakeHelper::isLeft() {
  Packet packet;
  Received received = Received::packet;
  while (received == Received::packet) received = receivePacket(connection_.number(), packet);
  return received == Received::end;
}

}  // namespace vorrin::helper
