#include "platform/macos/foundation/utf8.h"

#include <cstddef>

namespace vorrin {

namespace {

struct Sequence {
  std::size_t length = 1;
  bool valid = false;
};

struct ByteRange {
  unsigned char first = 0x80;
  unsigned char last = 0xBF;
};

// How many bytes follow a lead byte, and the narrower range of the first of them that keeps out
// overlong forms, surrogates and values above U+10FFFF.
struct Lead {
  std::size_t following = 0;
  ByteRange second;
  bool valid = true;
};

Lead leadOf(unsigned char byte) {
  if (byte < 0x80) return {};
  if (byte >= 0xC2 && byte <= 0xDF) return {.following = 1, .second = {}};
  if (byte == 0xE0) return {.following = 2, .second = {.first = 0xA0}};
  if (byte == 0xED) return {.following = 2, .second = {.last = 0x9F}};
  if (byte >= 0xE1 && byte <= 0xEF) return {.following = 2, .second = {}};
  if (byte == 0xF0) return {.following = 3, .second = {.first = 0x90}};
  if (byte >= 0xF1 && byte <= 0xF3) return {.following = 3, .second = {}};
  if (byte == 0xF4) return {.following = 3, .second = {.last = 0x8F}};
  return {.second = {}, .valid = false};
}

Sequence firstSequence(std::string_view text) {
  const Lead lead = leadOf(static_cast<unsigned char>(text.front()));
  if (!lead.valid) return {};
  ByteRange allowed = lead.second;
  for (std::size_t i = 1; i <= lead.following; ++i) {
    const auto byte = i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    if (byte < allowed.first || byte > allowed.last) return {.length = i};
    allowed = {};
  }
  return {.length = lead.following + 1, .valid = true};
}

}  // namespace

std::string repairedUtf8(std::string_view text) {
  std::string repaired;
  repaired.reserve(text.size());
  while (!text.empty()) {
    const Sequence sequence = firstSequence(text);
    repaired += sequence.valid ? text.substr(0, sequence.length) : "\xEF\xBF\xBD";
    text.remove_prefix(sequence.length);
  }
  return repaired;
}

}  // namespace vorrin
