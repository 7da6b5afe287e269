#include "input_helper/protocol/protocol.h"

#include <algorithm>
#include <cstring>
#include <type_traits>
#include <utility>

namespace vorrin::helper_protocol {
namespace {

using Place = std::uint16_t;

constexpr ShortcutSet allShortcuts = (1U << shortcutKeys.size()) - 1;

bool isSound(const Configure& configure) {
  return configure.enabled <= 1 && configure.keys <= allShortcuts;
}

bool isSound(const Verdict& verdict) {
  return verdict.swallow <= 1;
}

bool isSound(const PostedKey& posted) {
  return posted.down <= 1 && (posted.key == 0 || isDigitKey(posted.key));
}

bool isSound(const Post& post) {
  return post.count <= maximumPosts &&
         std::ranges::all_of(std::span(post.keys).first(post.count),
                             [](const auto& key) { return isSound(key); });
}

/// What the helper says is believed: it may do more than whom it says it to.
template <class Message>
bool isSound(const Message&) {
  return true;
}

template <class Messages>
Packet encodeOne(const Messages& messages) {
  return std::visit(
      [place = static_cast<Place>(messages.index())](const auto& message) {
        static_assert(sizeof place + sizeof message <= sizeof Packet::bytes);
        Packet packet;
        std::memcpy(packet.bytes.data(), &place, sizeof place);
        std::memcpy(packet.bytes.data() + sizeof place, &message, sizeof message);
        packet.size = sizeof place + sizeof message;
        return packet;
      },
      messages);
}

/// The message that `bytes` are, if they are one at all.
template <class Message>
std::optional<Message> read(std::span<const std::byte> bytes) {
  static_assert(std::has_unique_object_representations_v<Message>, "no padding");
  Message message;
  if (bytes.size() != sizeof message) return std::nullopt;
  std::memcpy(&message, bytes.data(), sizeof message);
  return isSound(message) ? std::optional(message) : std::nullopt;
}

template <class Messages, std::size_t... places>
std::optional<Messages> decodeOne(std::span<const std::byte> packet,
                                  std::index_sequence<places...>) {
  Place place = 0;
  if (packet.size() < sizeof place) return std::nullopt;
  std::memcpy(&place, packet.data(), sizeof place);
  const auto bytes = packet.subspan(sizeof place);
  std::optional<Messages> decoded;
  const auto attempt = [&]<std::size_t at>() {
    const auto message = read<std::variant_alternative_t<at, Messages>>(bytes);
    if (at == place && message) decoded.emplace(*message);
  };
  (attempt.template operator()<places>(), ...);
  return decoded;
}

template <class Messages>
std::optional<Messages> decode(std::span<const std::byte> packet) {
  return decodeOne<Messages>(packet, std::make_index_sequence<std::variant_size_v<Messages>>());
}

}  // namespace

bool isShortcutKey(std::uint16_t key) {
  return std::ranges::find(shortcutKeys, key) != shortcutKeys.end();
}

bool isDigitKey(std::uint16_t key) {
  return key >= firstDigitKey && key <= lastDigitKey;
}

ShortcutSet shortcutSet(std::uint16_t key) {
  const auto place = std::ranges::find(shortcutKeys, key) - shortcutKeys.begin();
  return static_cast<ShortcutSet>(1U << place & allShortcuts);
}

const char* describe(EndReason reason) {
  switch (reason) {
    case EndReason::panicChord:
      return "the input helper let go at Escape, Backspace and Enter; choose “Retry connection” to "
             "have it back";
    case EndReason::revoked:
      return "the permission to use the keyboards does not hold any more";
    case EndReason::noDevices:
      return "the system makes no input devices: /dev/uinput is missing or closed";
    case EndReason::replaced:
      return "another user's session is in front";
  }
  return "";
}

Packet encode(const ToHelper& message) {
  return encodeOne(message);
}

Packet encode(const FromHelper& message) {
  return encodeOne(message);
}

std::optional<ToHelper> decodeToHelper(std::span<const std::byte> packet) {
  return decode<ToHelper>(packet);
}

std::optional<FromHelper> decodeFromHelper(std::span<const std::byte> packet) {
  return decode<FromHelper>(packet);
}

}  // namespace vorrin::helper_protocol
