#include <csignal>
#include <filesystem>
#include <fstream>

#include "fault_test.h"
#include "held_input.h"

namespace vorrin::faults {
namespace {

/// The process that keeps the program's connections open: the one child that the program has.
struct KeeperFault : FaultTest {
  pid_t keeper() {
    const std::string process = std::to_string(program->process().id());
    std::ifstream children("/proc/" + process + "/task/" + process + "/children");
    pid_t child = -1;
    children >> child;
    EXPECT_GT(child, 0) << "no keeper";
    return child;
  }

  static bool isAlive(pid_t process) {
    // One that has ended and that nobody has asked about yet still has its folder.
    std::ifstream stat("/proc/" + std::to_string(process) + "/stat");
    std::string number;
    std::string name;
    std::string state;
    return stat >> number >> name >> state && state != "Z" && state != "X";
  }
};

TEST_F(KeeperFault, it_ends_soon_after_the_program_was_killed) {
  startMacros();
  const pid_t process = keeper();
  kill();
  EXPECT_TRUE(waitUntil([&] { return !isAlive(process); }));
  expectUsableInput();
  expectWorkingProgram();
}

TEST_F(KeeperFault, it_is_gone_when_the_program_has_ended) {
  startMacros();
  const pid_t process = keeper();
  program->process().signal(SIGTERM);
  EXPECT_EQ(program->process().waitForEnd(), Ending{});
  EXPECT_FALSE(isAlive(process));
}

TEST_F(KeeperFault, it_ends_when_the_server_dies_with_the_program) {
  startMacros();
  const pid_t process = keeper();
  desktop.server().process().signal(SIGSTOP);
  program->process().signal(SIGKILL);
  ASSERT_TRUE(program->process().waitForEnd());
  EXPECT_TRUE(isAlive(process));
  desktop.server().process().signal(SIGKILL);
  EXPECT_TRUE(waitUntil([&] { return !isAlive(process); }));
}

TEST_F(KeeperFault, signals_that_ask_a_program_to_end_leave_it_to_the_program) {
  startMacros();
  for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGQUIT}) ::kill(keeper(), signal);
  const pid_t process = keeper();
  EXPECT_TRUE(isAlive(process));
  user.tap(keys::escape);
  expectSilence();
}

TEST(Keeper, started_by_somebody_else_it_says_so_and_ends) {
  for (const char* arguments : {"", "0", "9", "x", "1 2"}) {
    Process process(
        {"sh", "-c", std::string("exec " VORRIN_CONNECTION_KEEPER " ") + arguments + " 2>&1"});
    EXPECT_EQ(process.readLine(), "vorrin-connection-keeper: only Vorrin starts this");
    EXPECT_EQ(process.waitForEnd(), (Ending{.bySignal = false, .number = 2}));
  }
}

TEST_F(KeeperFault, without_it_the_macros_go_on) {
  startMacros();
  const pid_t process = keeper();
  ::kill(process, SIGKILL);
  ASSERT_TRUE(waitUntil([&] { return !isAlive(process); }));
  client->readAll(user);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
  user.tap(keys::escape);
  expectSilence();
  EXPECT_EQ(heldInput(desktop.display()), "");
}

}  // namespace
}  // namespace vorrin::faults
