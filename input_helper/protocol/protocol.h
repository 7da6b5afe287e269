#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>

/// What the main program and the input helper say to each other, over a Unix socket of type
/// SOCK_SEQPACKET: the kernel keeps the messages apart, one packet is one message. Both ends run on
/// one machine, so numbers are in its byte order.
///
/// A packet is two bytes, the place of the message in `ToHelper` or `FromHelper`, and then the
/// message itself, which has no padding. So a message has one form only. Anything of another
/// length, and to the helper any field out of its bounds, is a violation: the end that reads it
/// closes the connection, and the helper gives every device back.
///
/// The helper begins, with `Availability`. Whenever a message changes, `connectMethod` does, so
/// that ends of different versions never meet.
///
/// Keys have the kernel's numbers (input-event-codes.h). Flags are 0 or 1.
namespace vorrin::helper_protocol {

/// The method of the helper on the bus that hands back the main program's end of the socket.
inline constexpr const char* connectMethod = "Connect";

/// Backtick, Tab, F6 to F9: the only keys, Escape apart, that ever leave the helper.
inline constexpr std::array<std::uint16_t, 6> shortcutKeys = {41, 15, 64, 65, 66, 67};
inline constexpr std::uint16_t escapeKey = 1;
/// The digits 1 to 9 and 0, in the order of their numbers: the only keys that may be posted.
inline constexpr std::uint16_t firstDigitKey = 2;
inline constexpr std::uint16_t lastDigitKey = 11;

bool isShortcutKey(std::uint16_t key);
bool isDigitKey(std::uint16_t key);

/// A bit for each of `shortcutKeys`, the first one lowest.
using ShortcutSet = std::uint8_t;
/// The set of this key alone; empty when it is no shortcut key.
ShortcutSet shortcutSet(std::uint16_t key);

/// To the helper: whether the tap is enabled, and which keys may be swallowed.
struct Configure {
  std::uint8_t enabled = 0;
  ShortcutSet keys = 0;
  bool operator==(const Configure&) const = default;
};

/// To the helper: the answer to the question of the same number; any other is ignored.
struct Verdict {
  std::uint32_t question = 0;
  std::uint32_t swallow = 0;
  bool operator==(const Verdict&) const = default;
};

/// One press or release to be made; `key` is a digit, or 0 for the left button.
struct PostedKey {
  std::uint8_t key = 0;
  std::uint8_t down = 0;
  bool operator==(const PostedKey&) const = default;
};
inline constexpr std::size_t maximumPosts = 8;

/// To the helper: the first `count` are made, in order, each in a frame of its own.
struct Post {
  std::uint8_t count = 0;
  std::array<PostedKey, maximumPosts> keys{};
  bool operator==(const Post&) const = default;
};

enum class Listening : std::uint8_t {
  possible = 1,
  keyboardTaken = 2,  ///< another program holds one
  sessionAway = 3,    ///< switched away, locked or asleep
};

/// From the helper: whether it can hold the keyboards.
struct Availability {
  Listening listening = Listening::possible;
  bool operator==(const Availability&) const = default;
};

/// From the helper: Escape moved, or a shortcut key went down without a modifier and waits for its
/// verdict, or one that was asked about repeats or came up again.
struct KeyMoved {
  std::uint32_t question = 0;  ///< the number that the verdict is to have; 0: none is needed
  std::uint16_t key = 0;
  std::uint8_t down = 0;
  std::uint8_t repeated = 0;  ///< the keyboard's own doing, while the key stays down
  bool operator==(const KeyMoved&) const = default;
};

/// From the helper: a question was not answered in time. Its key passed, and keys go on passing
/// unseen until the next `Configure` that enables the tap.
struct Disabled {
  std::uint32_t question = 0;
  bool operator==(const Disabled&) const = default;
};

enum class EndReason : std::uint8_t {
  panicChord = 1,  ///< the user pressed it
  revoked = 2,     ///< the permission was taken back, or nobody can say that it holds
  noDevices = 3,   ///< the system makes no input devices
  replaced = 4,    ///< another session is in front and wants the keyboards
};
/// The reason in words, for a log.
const char* describe(EndReason reason);

/// From the helper: its last message.
struct Ending {
  EndReason reason = EndReason::panicChord;
  bool operator==(const Ending&) const = default;
};

using ToHelper = std::variant<Configure, Verdict, Post>;
using FromHelper = std::variant<Availability, KeyMoved, Disabled, Ending>;

/// One message in the form in which it travels. Never on the heap: posting must not allocate.
struct Packet {
  std::array<std::byte, 32> bytes{};
  std::size_t size = 0;
  [[nodiscard]] std::span<const std::byte> view() const { return {bytes.data(), size}; }
};

Packet encode(const ToHelper& message);
Packet encode(const FromHelper& message);

/// The message of one packet; nothing when the packet breaks any rule above.
std::optional<ToHelper> decodeToHelper(std::span<const std::byte> packet);
std::optional<FromHelper> decodeFromHelper(std::span<const std::byte> packet);

}  // namespace vorrin::helper_protocol
