#include <gtest/gtest.h>

#include <csignal>

#include "tests/x11/harness/process.h"
#include "tests/x11/harness/program.h"
#include "tests/x11/harness/server.h"

namespace vorrin::x11_tests {
namespace {

// An application on an X server, and what it writes on standard output and standard error.
struct ApplicationTest : testing::Test {
  Home home;
  Server server;
  Process application{{"sh", "-c", "exec " VORRIN_APPLICATION_PROGRAM " 2>&1"}, environment()};

  ApplicationTest() { EXPECT_EQ(application.readLine(), "launched"); }

  Environment environment() {
    Environment environment = home.environment();
    environment["DISPLAY"] = server.display();
    return environment;
  }
};

TEST_F(ApplicationTest, is_told_of_its_end_when_the_server_dies) {
  server.process().signal(SIGKILL);
  EXPECT_EQ(application.readLine(), "will terminate");
}

TEST_F(ApplicationTest, says_in_one_line_that_the_server_died_and_fails) {
  server.process().signal(SIGKILL);
  ASSERT_EQ(application.readLine(), "will terminate");
  EXPECT_EQ(application.readLine(), "vorrin: the X server is gone · start Vorrin again");
  EXPECT_EQ(application.readLine(), std::nullopt);
  EXPECT_EQ(application.waitForEnd(), (Ending{.bySignal = false, .number = 1}));
}

TEST_F(ApplicationTest, ends_when_the_server_ends_properly) {
  server.process().signal(SIGTERM);
  EXPECT_EQ(application.readLine(), "will terminate");
  EXPECT_EQ(application.waitForEnd(), (Ending{.bySignal = false, .number = 1}));
}

}  // namespace
}  // namespace vorrin::x11_tests
