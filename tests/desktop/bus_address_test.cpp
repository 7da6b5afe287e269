#include "platform/linux/session/bus_address.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdlib>

namespace vorrin {
namespace {

/// The bytes of a socket's name, with the zero byte in front of an abstract one.
std::string nameOf(const BusAddress& address) {
  const std::size_t length = address.local->length - offsetof(sockaddr_un, sun_path);
  return {address.local->address.sun_path, length};
}

TEST(BusAddress, a_path_ends_with_a_zero_byte) {
  const auto read = readBusAddresses("unix:path=/run/user/1000/bus");
  ASSERT_EQ(read.size(), 1U);
  EXPECT_EQ(read[0].transport, "unix");
  EXPECT_EQ(nameOf(read[0]), std::string("/run/user/1000/bus") + '\0');
}

TEST(BusAddress, an_abstract_name_begins_with_a_zero_byte) {
  const auto read = readBusAddresses("unix:abstract=/tmp/dbus-1,guid=0123");
  EXPECT_EQ(nameOf(read.at(0)), '\0' + std::string("/tmp/dbus-1"));
}

TEST(BusAddress, escaped_characters_are_restored) {
  EXPECT_EQ(nameOf(readBusAddresses("unix:path=/a%20b%2c%zz").at(0)),
            std::string("/a b,%zz") + '\0');
}

TEST(BusAddress, a_list_keeps_its_order) {
  const auto read = readBusAddresses("unix:path=/a;tcp:host=example,port=1;unix:path=/b");
  ASSERT_EQ(read.size(), 3U);
  EXPECT_EQ(nameOf(read[0]), std::string("/a") + '\0');
  EXPECT_EQ(read[1].transport, "tcp");
  EXPECT_FALSE(read[1].local);
  EXPECT_EQ(nameOf(read[2]), std::string("/b") + '\0');
}

TEST(BusAddress, the_runtime_directory_holds_the_bus_of_the_user) {
  ::setenv("XDG_RUNTIME_DIR", "/run/user/7", 1);
  EXPECT_EQ(nameOf(readBusAddresses("unix:runtime=yes").at(0)),
            std::string("/run/user/7/bus") + '\0');
  ::unsetenv("XDG_RUNTIME_DIR");
  EXPECT_FALSE(readBusAddresses("unix:runtime=yes").at(0).local);
}

TEST(BusAddress, what_is_no_address_is_left_out) {
  EXPECT_TRUE(readBusAddresses("").empty());
  EXPECT_TRUE(readBusAddresses("nonsense;;").empty());
  EXPECT_FALSE(readBusAddresses("unix:").at(0).local);
  EXPECT_FALSE(readBusAddresses("unix:path").at(0).local);
  EXPECT_FALSE(readBusAddresses("unix:,,=").at(0).local);
}

TEST(BusAddress, a_name_too_long_for_a_socket_is_none) {
  EXPECT_FALSE(readBusAddresses("unix:path=/" + std::string(200, 'a')).at(0).local);
}

}  // namespace
}  // namespace vorrin
