#include "input_helper/protocol/protocol.h"

#include <algorithm>
#include <cstring>

namespace vorrin::helper_protocol {
namespace {

constexpr std::size_t headerSize = 4;

enum class Kind : std::uint16_t {
  helloToHelper = 1,
  configure = 2,
  verdict = 3,
  post = 4,
  unlocked = 5,
  helloFromHelper = 101,
  availability = 102,
  question = 103,
  keyMoved = 104,
  disabled = 105,
  ending = 106,
};

class Writer {
 public:
  explicit Writer(Kind kind) {
    packet_.size = headerSize;
    std::memcpy(packet_.bytes.data(), &kind, sizeof kind);
  }

  template <class Number>
  Writer& put(Number number) {
    std::memcpy(packet_.bytes.data() + packet_.size, &number, sizeof number);
    packet_.size += sizeof number;
    return *this;
  }

  Writer& put(const Modifiers& modifiers) {
    return put(
        static_cast<std::uint8_t>((modifiers.shift ? 1U : 0U) | (modifiers.control ? 2U : 0U) |
                                  (modifiers.alternate ? 4U : 0U) | (modifiers.command ? 8U : 0U)));
  }

  [[nodiscard]] Packet finish() {
    const auto length = static_cast<std::uint16_t>(packet_.size);
    std::memcpy(packet_.bytes.data() + sizeof(Kind), &length, sizeof length);
    return packet_;
  }

 private:
  Packet packet_;
};

/// Reads fields from the front; once a field is missing or out of range everything else fails too.
class Reader {
 public:
  explicit Reader(std::span<const std::byte> packet) : rest_(packet) {
    const auto size = packet.size();
    kind_ = static_cast<Kind>(take<std::uint16_t>());
    if (take<std::uint16_t>() != size) sound_ = false;
  }

  [[nodiscard]] Kind kind() const { return kind_; }

  template <class Number>
  Number take() {
    Number number{};
    if (rest_.size() < sizeof number) {
      sound_ = false;
      return number;
    }
    std::memcpy(&number, rest_.data(), sizeof number);
    rest_ = rest_.subspan(sizeof number);
    return number;
  }

  std::uint8_t takeUpTo(std::uint8_t maximum) {
    const auto number = take<std::uint8_t>();
    if (number <= maximum) return number;
    sound_ = false;
    return 0;
  }

  bool takeFlag() { return takeUpTo(1) == 1; }

  Modifiers takeModifiers() {
    const unsigned bits = takeUpTo(15);
    return {(bits & 1U) != 0, (bits & 2U) != 0, (bits & 4U) != 0, (bits & 8U) != 0};
  }

  void demand(bool condition) { sound_ = sound_ && condition; }

  /// True when every field was there and sound, and nothing follows the last.
  [[nodiscard]] bool finished() const { return sound_ && rest_.empty(); }

 private:
  std::span<const std::byte> rest_;
  Kind kind_{};
  bool sound_ = true;
};

template <class... Visitors>
struct Overloaded : Visitors... {
  using Visitors::operator()...;
};
template <class... Visitors>
Overloaded(Visitors...) -> Overloaded<Visitors...>;  // clang 16 does not find this by itself

Packet encodeHello(Kind kind, const Hello& hello) {
  return Writer(kind).put(magic).put(hello.version).finish();
}

Hello readHello(Reader& reader) {
  reader.demand(reader.take<std::uint32_t>() == magic);
  return {reader.take<std::uint16_t>()};
}

Configure readConfigure(Reader& reader) {
  Configure message;
  message.enabled = reader.takeFlag();
  message.count = reader.takeUpTo(maximumShortcuts);
  for (std::size_t i = 0; i < message.count; ++i) {
    message.keys[i] = reader.take<std::uint16_t>();
    reader.demand(isShortcutKey(message.keys[i]));
  }
  return message;
}

Post readPost(Reader& reader) {
  Post message;
  message.count = reader.takeUpTo(maximumPosts);
  for (std::size_t i = 0; i < message.count; ++i) {
    message.keys[i].key = reader.take<std::uint16_t>();
    message.keys[i].down = reader.takeFlag();
    reader.demand(message.keys[i].key == 0 || isDigitKey(message.keys[i].key));
  }
  return message;
}

std::optional<ToHelper> readToHelper(Reader& reader) {
  switch (reader.kind()) {
    case Kind::helloToHelper:
      return readHello(reader);
    case Kind::configure:
      return readConfigure(reader);
    case Kind::verdict: {
      const auto question = reader.take<std::uint32_t>();
      return Verdict{question, reader.takeFlag()};
    }
    case Kind::post:
      return readPost(reader);
    case Kind::unlocked:
      return Unlocked{};
    default:
      return std::nullopt;
  }
}

Question readQuestion(Reader& reader) {
  Question message;
  message.number = reader.take<std::uint32_t>();
  message.key = reader.take<std::uint16_t>();
  message.modifiers = reader.takeModifiers();
  reader.demand(isShortcutKey(message.key));
  return message;
}

KeyMoved readKeyMoved(Reader& reader) {
  KeyMoved message;
  message.key = reader.take<std::uint16_t>();
  message.down = reader.takeFlag();
  message.repeated = reader.takeFlag();
  message.modifiers = reader.takeModifiers();
  reader.demand(message.key == escapeKey || isShortcutKey(message.key));
  return message;
}

std::optional<FromHelper> readFromHelper(Reader& reader) {
  switch (reader.kind()) {
    case Kind::helloFromHelper:
      return readHello(reader);
    case Kind::availability:
      return Availability{reader.takeFlag()};
    case Kind::question:
      return readQuestion(reader);
    case Kind::keyMoved:
      return readKeyMoved(reader);
    case Kind::disabled: {
      const auto reason = reader.takeUpTo(2);
      reader.demand(reason >= 1);
      return Disabled{static_cast<DisableReason>(reason)};
    }
    case Kind::ending: {
      const auto reason = reader.takeUpTo(3);
      reader.demand(reason >= 1);
      return Ending{static_cast<EndReason>(reason)};
    }
    default:
      return std::nullopt;
  }
}

}  // namespace

bool isShortcutKey(std::uint16_t key) {
  return std::ranges::find(shortcutKeys, key) != shortcutKeys.end();
}

bool isDigitKey(std::uint16_t key) {
  return key >= firstDigitKey && key <= lastDigitKey;
}

Packet encode(const ToHelper& message) {
  return std::visit(Overloaded{
                        [](const Hello& hello) { return encodeHello(Kind::helloToHelper, hello); },
                        [](const Configure& configure) {
                          Writer writer(Kind::configure);
                          writer.put<std::uint8_t>(configure.enabled).put(configure.count);
                          for (std::size_t i = 0; i < configure.count; ++i)
                            writer.put(configure.keys[i]);
                          return writer.finish();
                        },
                        [](const Verdict& verdict) {
                          return Writer(Kind::verdict)
                              .put(verdict.question)
                              .put<std::uint8_t>(verdict.swallow)
                              .finish();
                        },
                        [](const Post& post) {
                          Writer writer(Kind::post);
                          writer.put(post.count);
                          for (std::size_t i = 0; i < post.count; ++i)
                            writer.put(post.keys[i].key).put<std::uint8_t>(post.keys[i].down);
                          return writer.finish();
                        },
                        [](const Unlocked&) { return Writer(Kind::unlocked).finish(); },
                    },
                    message);
}

Packet encode(const FromHelper& message) {
  return std::visit(
      Overloaded{
          [](const Hello& hello) { return encodeHello(Kind::helloFromHelper, hello); },
          [](const Availability& availability) {
            return Writer(Kind::availability).put<std::uint8_t>(availability.available).finish();
          },
          [](const Question& question) {
            return Writer(Kind::question)
                .put(question.number)
                .put(question.key)
                .put(question.modifiers)
                .finish();
          },
          [](const KeyMoved& moved) {
            return Writer(Kind::keyMoved)
                .put(moved.key)
                .put<std::uint8_t>(moved.down)
                .put<std::uint8_t>(moved.repeated)
                .put(moved.modifiers)
                .finish();
          },
          [](const Disabled& disabled) {
            return Writer(Kind::disabled).put(disabled.reason).finish();
          },
          [](const Ending& ending) { return Writer(Kind::ending).put(ending.reason).finish(); },
      },
      message);
}

std::optional<ToHelper> decodeToHelper(std::span<const std::byte> packet) {
  Reader reader(packet);
  auto message = readToHelper(reader);
  return reader.finished() ? message : std::nullopt;
}

std::optional<FromHelper> decodeFromHelper(std::span<const std::byte> packet) {
  Reader reader(packet);
  auto message = readFromHelper(reader);
  return reader.finished() ? message : std::nullopt;
}

}  // namespace vorrin::helper_protocol
