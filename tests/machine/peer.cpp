#include "peer.h"

#include <sys/socket.h>

#include <cstdlib>
#include <utility>

namespace vorrin::machine {

using namespace helper_protocol;

void Peer::listen() {
  Packet packet;
  while (connection_.isOpen() && !isLeft_) {
    const auto received = receivePacket(connection_.get(), packet);
    if (received == Received::nothing) return;
    isLeft_ = received == Received::end;
    if (isLeft_) return;
    const auto message = decodeFromHelper(packet.view());
    if (!message) std::abort();
    said_.push_back(*message);
    const auto* moved = std::get_if<KeyMoved>(&*message);
    if (moved == nullptr || moved->question == 0) continue;
    if (const auto swallow = verdict(*moved)) say(Verdict{moved->question, *swallow});
  }
}

void Peer::say(const ToHelper& message) const {
  // What the helper does with its end is the matter of the tests.
  [[maybe_unused]] const bool sent = sendPacket(connection_.get(), encode(message));
}

void Peer::sayBytes(const std::string& bytes) const {
  if (::send(connection_.get(), bytes.data(), bytes.size(), MSG_NOSIGNAL) < 0) std::abort();
}

void Peer::configure(const std::vector<std::uint16_t>& keys, bool enabled) const {
  unsigned set = 0;
  for (const auto key : keys) set |= shortcutSet(key);
  say(Configure{enabled, static_cast<ShortcutSet>(set)});
}

void Peer::post(std::uint8_t key) const {
  say(Post{2, {{{key, 1}, {key, 0}}}});
}

}  // namespace vorrin::machine
