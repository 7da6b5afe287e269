#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <variant>

/// What the main program and the input helper say to each other.
///
/// The two share a Unix socket of type SOCK_SEQPACKET, made by the main program as a pair; the
/// helper finds its end as standard input. The kernel keeps the messages apart: one packet is one
/// message. Both ends run on one machine, so numbers are in its byte order.
///
/// A packet is a header of four bytes, then the message's fields without padding:
///
///     kind    2 bytes
///     length  2 bytes  of the whole packet; a packet of any other length is refused
///
/// Each kind has one direction and a length of its own; `Post` and `Configure` carry a count within
/// their fixed bounds and are only as long as it says. Anything else is a violation: the end that
/// reads it closes the connection, and the helper gives every device back.
///
/// Opening: the main program sends `Hello`, the helper answers `Hello`, then `Availability`. Either
/// end refuses a `version` other than its own, a second `Hello`, and any message before the first.
/// The helper serves one process, the one that made the sockets; a packet of any other is a
/// violation too. So the main program has its packets name their sender (`nameSenders`).
///
/// Keys have the kernel's numbers (input-event-codes.h).
namespace vorrin::helper_protocol {

inline constexpr std::uint32_t magic = 0x4E525256;  // "VRRN"
inline constexpr std::uint16_t version = 1;
inline constexpr std::size_t maximumShortcuts = 6;
inline constexpr std::size_t maximumPosts = 8;
inline constexpr std::size_t maximumPacket = 64;

/// Backtick, Tab, F6 to F9: the only keys, Escape apart, that ever leave the helper.
inline constexpr std::array<std::uint16_t, maximumShortcuts> shortcutKeys = {41, 15, 64,
                                                                             65, 66, 67};
inline constexpr std::uint16_t escapeKey = 1;
/// The digits 1 to 9 and 0, in the order of their numbers: the only keys that may be posted.
inline constexpr std::uint16_t firstDigitKey = 2;
inline constexpr std::uint16_t lastDigitKey = 11;

bool isShortcutKey(std::uint16_t key);
bool isDigitKey(std::uint16_t key);

/// Both ways: the first message of either end.
struct Hello {
  std::uint16_t version = helper_protocol::version;
  bool operator==(const Hello&) const = default;
};

/// To the helper: whether the tap is enabled, and which of `shortcutKeys` may be swallowed.
struct Configure {
  bool enabled = false;
  std::uint8_t count = 0;
  std::array<std::uint16_t, maximumShortcuts> keys{};
  bool operator==(const Configure&) const = default;
};

/// To the helper: the answer to the `Question` of the same number.
struct Verdict {
  std::uint32_t question = 0;
  bool swallow = false;
  bool operator==(const Verdict&) const = default;
};

/// One press or release to be made; `key` is a digit, or 0 for the left button.
struct PostedKey {
  std::uint16_t key = 0;
  bool down = false;
  bool operator==(const PostedKey&) const = default;
};

/// To the helper: presses and releases to be made, in order, each in a frame of its own.
struct Post {
  std::uint8_t count = 0;
  std::array<PostedKey, maximumPosts> keys{};
  bool operator==(const Post&) const = default;
};

/// To the helper: the user is at work in the session, whatever was heard of a lock before.
struct Unlocked {
  bool operator==(const Unlocked&) const = default;
};

/// From the helper: whether it can hold the keyboards (another program may hold one).
struct Availability {
  bool available = false;
  bool operator==(const Availability&) const = default;
};

/// Modifiers that were down when a key moved.
struct Modifiers {
  bool shift = false;
  bool control = false;
  bool alternate = false;
  bool command = false;
  bool operator==(const Modifiers&) const = default;
};

/// From the helper: a shortcut key went down and waits for its verdict.
struct Question {
  std::uint32_t number = 0;
  std::uint16_t key = 0;
  Modifiers modifiers;
  bool operator==(const Question&) const = default;
};

/// From the helper: Escape moved, or a shortcut key that was asked about repeats or came up again.
struct KeyMoved {
  std::uint16_t key = 0;
  bool down = false;
  bool repeated = false;  ///< the keyboard's own doing, while the key stays down
  Modifiers modifiers;
  bool operator==(const KeyMoved&) const = default;
};

/// Why the helper disabled the tap.
enum class DisableReason : std::uint8_t {
  noAnswer = 1,  ///< a question was not answered in time
  session = 2,   ///< the session was switched away, locked or put to sleep
};

/// From the helper: keys pass unseen until the next `Configure` that enables the tap.
struct Disabled {
  DisableReason reason = DisableReason::noAnswer;
  bool operator==(const Disabled&) const = default;
};

/// Why the helper ends.
enum class EndReason : std::uint8_t {
  panicChord = 1,  ///< the user pressed it
  revoked = 2,     ///< the permission was taken back
  noUinput = 3,    ///< it may not make devices
};

/// From the helper: its last message.
struct Ending {
  EndReason reason = EndReason::panicChord;
  bool operator==(const Ending&) const = default;
};

using ToHelper = std::variant<Hello, Configure, Verdict, Post, Unlocked>;
using FromHelper = std::variant<Hello, Availability, Question, KeyMoved, Disabled, Ending>;

/// One message in the form in which it travels. Never on the heap: posting must not allocate.
struct Packet {
  std::array<std::byte, maximumPacket> bytes{};
  std::size_t size = 0;
  [[nodiscard]] std::span<const std::byte> view() const { return {bytes.data(), size}; }
};

Packet encode(const ToHelper& message);
Packet encode(const FromHelper& message);

/// The message of one packet; nothing when the packet breaks any rule above.
std::optional<ToHelper> decodeToHelper(std::span<const std::byte> packet);
std::optional<FromHelper> decodeFromHelper(std::span<const std::byte> packet);

}  // namespace vorrin::helper_protocol
