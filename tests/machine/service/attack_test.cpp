// What a program of the user's, or another user, can do to the helper: nothing that costs anybody
// the keyboard.

#include <sched.h>
#include <sys/ptrace.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "service_test.h"
#include "tests/x11/harness/process.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;

using ServiceAttack = MachineService;

std::string statusOf(pid_t process, const std::string& field) {
  std::ifstream file("/proc/" + std::to_string(process) + "/status");
  for (std::string line; std::getline(file, line);) {
    if (line.starts_with(field + ":\t")) return line.substr(field.size() + 2);
  }
  return {};
}

void expectNoRights(pid_t process) {
  EXPECT_EQ(outputOf("stat -c %U /proc/" + std::to_string(process) + "/environ"), "root")
      << "not to be dumped";
  EXPECT_THAT(statusOf(process, "Uid"), testing::StartsWith(outputOf("id -u vorrin-input") + "\t"));
  for (const char* set : {"CapInh", "CapPrm", "CapEff", "CapAmb"}) {
    EXPECT_EQ(statusOf(process, set), "0000000000000000") << set;
  }
  EXPECT_EQ(statusOf(process, "NoNewPrivs"), "1");
  EXPECT_EQ(statusOf(process, "Seccomp"), "2");
}

TEST_F(ServiceAttack, it_runs_as_nobody_who_logs_in_without_rights_or_children) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const pid_t process = service();
  ASSERT_GT(process, 0);
  expectNoRights(process);
  EXPECT_EQ(statusOf(process, "PPid"), "1");
  const auto number = std::to_string(process);
  EXPECT_EQ(outputOf("cat /proc/" + number + "/task/" + number + "/children"), "");
}

/// As the bus starts it where there is no systemd.
TEST_F(ServiceAttack, started_by_root_it_ends) {
  EXPECT_THAT(outputOf("'" HELPER_PATH "' 2>&1"), testing::HasSubstr("only as its own user"));
}

TEST_F(ServiceAttack, the_user_can_neither_signal_nor_trace_nor_limit_nor_hold_it) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const pid_t process = service();
  const auto group = "/sys/fs/cgroup/system.slice/vorrin-input-helper.service";
  const int done = login.run([&] {
    int successes = 0;
    for (int number = 1; number <= SIGRTMAX; ++number) {
      successes += ::kill(process, number) == 0 ? 1 : 0;
    }
    const rlimit none{0, 0};
    const sched_param idle{};
    const auto proc = "/proc/" + std::to_string(process);
    successes += ::ptrace(PTRACE_SEIZE, process, nullptr, nullptr) == 0 ? 1 : 0;
    successes += ::prlimit(process, RLIMIT_NOFILE, &none, nullptr) == 0 ? 1 : 0;
    successes += ::setpriority(PRIO_PROCESS, static_cast<id_t>(process), 19) == 0 ? 1 : 0;
    successes += ::sched_setscheduler(process, SCHED_IDLE, &idle) == 0 ? 1 : 0;
    for (const auto& file :
         {proc + "/mem", proc + "/environ", proc + "/oom_score_adj",
          std::string(group) + "/cgroup.freeze", std::string(group) + "/cgroup.kill"}) {
      successes += std::ofstream(file).is_open() ? 1 : 0;
    }
    return successes;
  });
  EXPECT_EQ(done, 0);
  EXPECT_TRUE(std::filesystem::exists(std::string(group) + "/cgroup.freeze"));
  EXPECT_EQ(service(), process);
}

TEST_F(ServiceAttack, what_its_caller_ignores_blocks_or_limits_does_not_reach_it) {
  caller.reset();
  std::signal(SIGCHLD, SIG_IGN);
  std::signal(SIGTERM, SIG_IGN);
  rlimit before{};
  ::getrlimit(RLIMIT_NOFILE, &before);
  const rlimit few{12, before.rlim_max};
  ::setrlimit(RLIMIT_NOFILE, &few);
  caller = std::make_unique<Caller>(login);
  ::setrlimit(RLIMIT_NOFILE, &before);
  std::signal(SIGCHLD, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  // Of systemd's, for all services.
  EXPECT_EQ(statusOf(service(), "SigIgn"), "0000000000001000");
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  ASSERT_TRUE(succeeds("busybox chvt 1"));
}

TEST_F(ServiceAttack, freezing_all_of_the_user_s_processes_costs_no_key) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const auto freezer = "/sys/fs/cgroup/user.slice/user-4242.slice/cgroup.freeze";
  ASSERT_TRUE(succeeds(std::string("echo 1 >") + freezer));
  for (const int key : {KEY_A, KEY_S, KEY_D}) EXPECT_TRUE(typePassing(key));
  ASSERT_TRUE(succeeds(std::string("echo 0 >") + freezer));
}

TEST_F(ServiceAttack, of_many_programs_of_a_session_one_is_served) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const auto devices = [] {
    const std::filesystem::directory_iterator folder("/dev/input");
    return std::distance(begin(folder), end(folder));
  };
  const auto before = devices();
  for (int count = 0; count < 12; ++count) {
    EXPECT_THAT(Caller(login).call("Connect").error, testing::HasSubstr("another program"));
  }
  EXPECT_EQ(devices(), before);
}

/// Has udev give the keyboard of this name to a second seat.
void giveAway(const std::string& keyboard) {
  std::filesystem::create_directories("/run/udev/rules.d");
  std::ofstream("/run/udev/rules.d/72-seat.rules")
      << "SUBSYSTEM==\"input\", ATTRS{name}==\"" << keyboard << "\", ENV{ID_SEAT}=\"seat1\"\n";
  EXPECT_TRUE(succeeds("udevadm control --reload && udevadm trigger -s input -c change"));
  EXPECT_TRUE(succeeds("udevadm settle"));
}

TEST_F(ServiceAttack, a_keyboard_of_another_seat_is_left_alone) {
  giveAway("Other keyboard");
  const UhidKeyboard other("Other keyboard");
  ASSERT_TRUE(until([this] { return watch.has("test/Other keyboard"); }));
  ASSERT_TRUE(succeeds("udevadm settle"));
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  EXPECT_FALSE(watch.has("vorrin-input-helper", "Other keyboard"));
  EXPECT_TRUE(watch.isFree("test/Other keyboard", "Other keyboard"));
  giveAway("Test keyboard");
  EXPECT_TRUE(until([this] { return keyboardIsFree(); })) << "one that was given away since";
  giveAway("No keyboard");
}

TEST_F(ServiceAttack, its_unit_leaves_it_little) {
  // systemd's own measure, of 10; what is left is told in docs/security.md.
  EXPECT_TRUE(
      succeeds("systemd-analyze security --threshold=10 vorrin-input-helper >/run/exposure || "
               "{ cat /run/exposure; false; }"));
}

}  // namespace
}  // namespace vorrin::machine
