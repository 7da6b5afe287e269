#include "input_helper/protocol/protocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>

#include <vector>

#include "input_helper/protocol/packet_socket.h"

namespace vorrin::helper_protocol {
namespace {

Packet packetOf(const std::vector<unsigned>& bytes) {
  Packet packet;
  for (const auto byte : bytes) packet.bytes.at(packet.size++) = static_cast<std::byte>(byte);
  return packet;
}

bool isSound(const std::vector<unsigned>& bytes) {
  return decodeToHelper(packetOf(bytes).view()).has_value();
}

TEST(Protocol, a_message_arrives_as_it_was_sent_and_cut_or_with_more_behind_it_is_refused) {
  for (const ToHelper& message :
       {ToHelper(Configure{1, 0b111111}), ToHelper(Verdict{0xFFFFFFFF, 1}),
        ToHelper(Post{2, {{{11, 1}, {0, 0}}}})}) {
    Packet packet = encode(message);
    EXPECT_EQ(decodeToHelper(packet.view()), message);
    for (std::size_t size = 0; size < packet.size; ++size) {
      EXPECT_FALSE(decodeToHelper(packet.view().first(size)));
    }
    ++packet.size;
    EXPECT_FALSE(decodeToHelper(packet.view()));
  }
}

TEST(Protocol, no_key_beside_the_six_can_be_asked_for) {
  for (unsigned keys = 0; keys < 256; ++keys) EXPECT_EQ(isSound({0, 0, 1, keys}), keys < 64);
  for (unsigned key = 0; key < 256; ++key) {
    EXPECT_EQ(shortcutSet(static_cast<std::uint16_t>(key)) != 0,
              isShortcutKey(static_cast<std::uint16_t>(key)));
  }
}

TEST(Protocol, nothing_but_digits_and_the_left_button_can_be_posted) {
  const auto post = [](unsigned count, unsigned key, unsigned down) {
    std::vector<unsigned> bytes{2, 0, count, key, down};
    bytes.resize(sizeof(std::uint16_t) + sizeof(Post));
    return bytes;
  };
  for (unsigned key = 0; key < 256; ++key) {
    EXPECT_EQ(isSound(post(1, key, 1)), key == 0 || (key >= 2 && key <= 11));
  }
  EXPECT_FALSE(isSound(post(1, 2, 2))) << "a flag";
  EXPECT_FALSE(isSound(post(9, 2, 1))) << "a count";
}

TEST(Protocol, a_flag_is_nothing_but_0_or_1) {
  EXPECT_TRUE(isSound({1, 0, 1, 0, 0, 0, 1, 0, 0, 0}));
  EXPECT_FALSE(isSound({1, 0, 1, 0, 0, 0, 2, 0, 0, 0}));
}

struct PacketSocket : testing::Test {
  std::pair<FileDescriptor, FileDescriptor> ends = makeSocketPair().value();
  Packet packet;
};

TEST_F(PacketSocket, a_packet_longer_than_any_message_comes_back_as_one_of_no_meaning) {
  const std::vector<char> huge(100'000, 'x');
  ASSERT_EQ(::send(ends.first.get(), huge.data(), huge.size(), 0), 100'000);
  EXPECT_EQ(receivePacket(ends.second.get(), packet), Received::packet);
  EXPECT_FALSE(decodeToHelper(packet.view()));
}

TEST_F(PacketSocket, the_end_of_the_other_side_is_told_from_silence) {
  EXPECT_EQ(receivePacket(ends.second.get(), packet), Received::nothing);
  ends.first = {};
  EXPECT_EQ(receivePacket(ends.second.get(), packet), Received::end);
}

TEST_F(PacketSocket, sending_to_an_end_that_never_reads_fails_instead_of_waiting) {
  const auto verdict = encode(ToHelper(Verdict{}));
  int sent = 0;
  while (sent < 100'000 && sendPacket(ends.first.get(), verdict)) ++sent;
  EXPECT_LT(sent, 100'000);
}

}  // namespace
}  // namespace vorrin::helper_protocol
