#include <unistd.h>

#include <csignal>

#include "tap_test.h"

namespace vorrin::x11_tests {
namespace {

struct LossTest : OwnDesktop, TapTest {
  LossTest() : TapTest(ownDesktop) { swallow("50"); }
};

TEST_F(LossTest, losing_the_server_invalidates_the_tap_and_the_program_ends_as_usual) {
  user.press(keys::backtick);
  tap.start("block 300");
  desktop.server().process().signal(SIGKILL);
  tap.start("disable");
  tap.start("enable");
  EXPECT_TRUE(tap.readUpTo("invalidated"));
  EXPECT_FALSE(tap.command("create 50"));
  tap.start("quit");
  EXPECT_EQ(tap.process().waitForEnd(), Ending{});
}

TEST_F(LossTest, losing_the_server_while_posting_ends_nothing) {
  tap.start("post 18 7 1000");
  tap.start("post 18 7 100000");
  ASSERT_TRUE(tap.readUpTo("post yes"));
  desktop.server().process().signal(SIGKILL);
  EXPECT_TRUE(tap.readUpTo("post yes"));
  tap.start("quit");
  EXPECT_EQ(tap.process().waitForEnd(), Ending{});
}

TEST(WithoutServer, there_is_no_tap_and_nothing_happens) {
  TapProcess tap("");
  EXPECT_TRUE(tap.command("trusted")) << "no server asks for a permission";
  EXPECT_FALSE(tap.command("create 50"));
  EXPECT_TRUE(tap.command("post 18 7 1"));
}

TEST(WithoutServer, a_server_that_comes_later_is_found) {
  // Servers of other tests look for the lowest number that is free.
  const std::string display = ":" + std::to_string(10'000 + ::getpid() % 40'000);
  TapProcess tap(display);
  ASSERT_FALSE(tap.command("create 50"));
  const Process late({"Xvfb", display, "-noreset", "-nolisten", "tcp"});
  EXPECT_TRUE(waitUntil([&] { return tap.command("create 50"); }));
}

}  // namespace
}  // namespace vorrin::x11_tests
