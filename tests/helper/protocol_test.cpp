#include "input_helper/protocol/protocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <vector>

#include "input_helper/protocol/packet_socket.h"

namespace vorrin::helper_protocol {
namespace {

std::vector<ToHelper> everyMessageToHelper() {
  return {Hello{},
          Hello{7},
          Configure{},
          Configure{true, 2, {15, 41}},
          Configure{true, 6, shortcutKeys},
          Verdict{0xFFFFFFFF, true},
          Verdict{0, false},
          Post{},
          Post{2, {{{0, true}, {0, false}}}},
          Post{4, {{{2, true}, {2, false}, {11, true}, {11, false}}}},
          Unlocked{}};
}

std::vector<FromHelper> everyMessageFromHelper() {
  return {Hello{},
          Availability{true},
          Availability{false},
          Question{1, 15, {}},
          Question{0xFFFFFFFF, 67, {true, true, true, true}},
          KeyMoved{1, true, false, {false, true, false, true}},
          KeyMoved{15, false, false, {}},
          Disabled{DisableReason::noAnswer},
          Disabled{DisableReason::session},
          Ending{EndReason::panicChord},
          Ending{EndReason::revoked},
          Ending{EndReason::noUinput}};
}

Packet packetOf(const std::vector<unsigned>& bytes) {
  Packet packet;
  for (const auto byte : bytes) packet.bytes.at(packet.size++) = static_cast<std::byte>(byte);
  return packet;
}

TEST(Protocol, every_message_to_the_helper_arrives_as_it_was_sent) {
  for (const auto& message : everyMessageToHelper()) {
    EXPECT_EQ(decodeToHelper(encode(message).view()), message);
  }
}

TEST(Protocol, every_message_from_the_helper_arrives_as_it_was_sent) {
  for (const auto& message : everyMessageFromHelper()) {
    EXPECT_EQ(decodeFromHelper(encode(message).view()), message);
  }
}

TEST(Protocol, a_message_of_the_other_direction_is_refused) {
  for (const auto& message : everyMessageToHelper()) {
    EXPECT_FALSE(decodeFromHelper(encode(message).view()));
  }
  for (const auto& message : everyMessageFromHelper()) {
    EXPECT_FALSE(decodeToHelper(encode(message).view()));
  }
}

TEST(Protocol, a_message_cut_anywhere_is_refused) {
  for (const auto& message : everyMessageToHelper()) {
    const Packet whole = encode(message);
    for (std::size_t size = 0; size < whole.size; ++size) {
      EXPECT_FALSE(decodeToHelper(whole.view().first(size)));
    }
  }
}

TEST(Protocol, a_message_with_more_behind_it_is_refused) {
  for (const auto& message : everyMessageToHelper()) {
    Packet longer = encode(message);
    ++longer.size;
    EXPECT_FALSE(decodeToHelper(longer.view()));
  }
}

TEST(Protocol, a_length_that_is_not_the_packet_s_is_refused) {
  EXPECT_TRUE(decodeToHelper(packetOf({5, 0, 4, 0}).view()));
  EXPECT_FALSE(decodeToHelper(packetOf({5, 0, 5, 0}).view()));
  EXPECT_FALSE(decodeToHelper(packetOf({5, 0, 0xFF, 0xFF}).view()));
}

TEST(Protocol, a_hello_without_the_magic_number_is_refused) {
  Packet hello = encode(ToHelper(Hello{}));
  hello.bytes[4] ^= std::byte{1};
  EXPECT_FALSE(decodeToHelper(hello.view()));
}

TEST(Protocol, no_key_beside_the_six_can_be_asked_for) {
  for (unsigned key = 0; key < 256; ++key) {
    const auto packet = packetOf({2, 0, 8, 0, 1, 1, key, 0});
    EXPECT_EQ(decodeToHelper(packet.view()).has_value(),
              isShortcutKey(static_cast<std::uint16_t>(key)));
  }
}

TEST(Protocol, nothing_but_digits_and_the_left_button_can_be_posted) {
  for (unsigned key = 0; key < 256; ++key) {
    const auto packet = packetOf({4, 0, 8, 0, 1, key, 0, 1});
    EXPECT_EQ(decodeToHelper(packet.view()).has_value(), key == 0 || (key >= 2 && key <= 11));
  }
}

TEST(Protocol, a_count_beyond_its_bound_is_refused) {
  EXPECT_FALSE(decodeToHelper(packetOf({2, 0, 6, 0, 1, 7}).view()));
  EXPECT_FALSE(decodeToHelper(packetOf({4, 0, 5, 0, 9}).view()));
}

TEST(Protocol, a_flag_is_nothing_but_0_or_1) {
  EXPECT_FALSE(decodeToHelper(packetOf({3, 0, 9, 0, 1, 0, 0, 0, 2}).view()));
}

TEST(Protocol, no_reason_beside_the_known_ones_is_taken) {
  EXPECT_FALSE(decodeFromHelper(packetOf({105, 0, 5, 0, 0}).view()));
  EXPECT_FALSE(decodeFromHelper(packetOf({105, 0, 5, 0, 3}).view()));
  EXPECT_FALSE(decodeFromHelper(packetOf({106, 0, 5, 0, 4}).view()));
}

TEST(PacketSocket, a_packet_longer_than_any_message_comes_back_as_one_of_no_meaning) {
  auto ends = makeSocketPair();
  ASSERT_TRUE(ends);
  const std::vector<char> huge(100'000, 'x');
  ASSERT_EQ(::send(ends->first.number(), huge.data(), huge.size(), 0), 100'000);
  Packet packet;
  EXPECT_EQ(receivePacket(ends->second.number(), packet), Received::packet);
  EXPECT_FALSE(decodeToHelper(packet.view()));
}

TEST(PacketSocket, a_packet_names_the_process_that_sent_it) {
  auto ends = makeSocketPair();
  ASSERT_TRUE(ends);
  ASSERT_TRUE(nameSenders(ends->first.number()));
  const Packet sent = encode(ToHelper(Unlocked{}));
  ASSERT_TRUE(sendPacket(ends->first.number(), sent));
  const pid_t other = ::fork();
  if (other == 0) ::_exit(sendPacket(ends->first.number(), sent) ? 0 : 1);
  int status = -1;
  ASSERT_EQ(::waitpid(other, &status, 0), other);
  ASSERT_EQ(status, 0);
  ASSERT_TRUE(nameSenders(ends->second.number()));
  Packet packet;
  pid_t sender = 0;
  EXPECT_EQ(receivePacket(ends->second.number(), packet, &sender), Received::packet);
  EXPECT_EQ(sender, ::getpid());
  EXPECT_EQ(receivePacket(ends->second.number(), packet, &sender), Received::packet);
  EXPECT_EQ(sender, other);
}

TEST(PacketSocket, a_packet_may_have_no_name) {
  auto ends = makeSocketPair();
  ASSERT_TRUE(ends);
  ASSERT_TRUE(sendPacket(ends->first.number(), encode(ToHelper(Unlocked{}))));
  Packet packet;
  pid_t sender = 1;
  EXPECT_EQ(receivePacket(ends->second.number(), packet, &sender), Received::packet);
  EXPECT_EQ(sender, 0);
}

TEST(PacketSocket, the_end_of_the_other_side_is_told_from_silence) {
  auto ends = makeSocketPair();
  ASSERT_TRUE(ends);
  Packet packet;
  EXPECT_EQ(receivePacket(ends->second.number(), packet), Received::nothing);
  ends->first.reset();
  EXPECT_EQ(receivePacket(ends->second.number(), packet), Received::end);
}

TEST(PacketSocket, sending_to_an_end_that_never_reads_fails_instead_of_waiting) {
  auto ends = makeSocketPair();
  ASSERT_TRUE(ends);
  const Packet packet = encode(ToHelper(Unlocked{}));
  int sent = 0;
  while (sent < 100'000 && sendPacket(ends->first.number(), packet)) ++sent;
  EXPECT_LT(sent, 100'000);
}

}  // namespace
}  // namespace vorrin::helper_protocol
