// The permission to use the keyboards: by the real polkit, asked in its own password dialogue, kept
// by the service, and taken back.

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "service_test.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::HasSubstr;

constexpr const char* rightPassword = "correct horse";

/// What took how long.
void report(const char* what, std::chrono::steady_clock::time_point begin) {
  const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
  std::printf("%s: let go after %.0f ms\n", what, taken.count());
}

class ServicePermission : public MachineService {
 protected:
  void connectByRule() {
    std::ofstream(rule) << "polkit.addRule(function(action, subject) {\n"
                           "  if (action.id == 'org.vorrin.input-helper.connect' &&\n"
                           "      subject.user == 'player') return polkit.Result.YES;\n});\n";
    ASSERT_TRUE(until([this] {
      auto answer = caller->call("Connect");
      if (answer.socket.isOpen()) peer.emplace(std::move(answer.socket));
      return peer.has_value();
    }));
    ASSERT_NO_FATAL_FAILURE(holdKeyboard());
  }

  const std::filesystem::path rule = "/etc/polkit-1/rules.d/60-test.rules";
};

TEST_F(ServicePermission, without_one_nothing_is_given_and_no_device_is_open_to_the_user) {
  EXPECT_THAT(caller->call("Connect").error, HasSubstr("not given"));
  const auto opened = login.run([] {
    int open = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/dev/input"))
      open += ::access(entry.path().c_str(), R_OK) == 0 && !entry.is_directory() ? 1 : 0;
    return open + (::access("/dev/uinput", R_OK) == 0 ? 1 : 0);
  });
  EXPECT_EQ(opened, 0);
}

TEST_F(ServicePermission, a_rule_of_the_administrator_s_that_goes_lets_go_at_once) {
  ASSERT_NO_FATAL_FAILURE(connectByRule());
  std::filesystem::remove(rule);
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_TRUE(hasEnded(EndReason::revoked));
  EXPECT_TRUE(keyboardIsFree());
  report("rule removed", begin);
}

TEST_F(ServicePermission, taking_back_needs_no_password_and_lets_go_at_once) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(Caller(login).call("TakeBack").error, "");
  EXPECT_TRUE(hasEnded(EndReason::revoked));
  EXPECT_TRUE(keyboardIsFree());
  report("taken back", begin);
  EXPECT_THAT(caller->call("?Connect").error, HasSubstr("took the permission back"));
  EXPECT_EQ(caller->call("AskEveryTime").error, "");
  EXPECT_THAT(caller->call("Connect").error, HasSubstr("not given"));
}

/// polkit's own dialogue for terminals, for the questions about one program.
class Dialogue {
 public:
  Dialogue(const Login& login, pid_t caller) {
    std::array<int, 2> known{};
    if (::pipe(known.data()) != 0) std::abort();
    process_ = ::forkpty(&terminal_, nullptr, nullptr, nullptr);
    if (process_ == 0) {
      login.enter();
      ::execlp("pkttyagent", "pkttyagent", "--process", std::to_string(caller).c_str(),
               "--notify-fd", std::to_string(known[1]).c_str(), nullptr);
      ::_exit(127);
    }
    ::close(known[1]);
    // It closes its end once polkit knows of it.
    char nothing = 0;
    EXPECT_EQ(::read(known[0], &nothing, 1), 0);
    ::close(known[0]);
  }
  Dialogue(const Dialogue&) = delete;
  Dialogue& operator=(const Dialogue&) = delete;
  ~Dialogue() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
    ::close(terminal_);
  }

  /// Reads on until this comes; all that came since the last time.
  std::string readUntil(const std::string& wanted) {
    std::string text;
    std::array<char, 512> buffer{};
    pollfd waited{terminal_, POLLIN, 0};
    while (text.find(wanted) == std::string::npos && ::poll(&waited, 1, 60'000) == 1) {
      const auto size = ::read(terminal_, buffer.data(), buffer.size());
      if (size <= 0) break;
      text.append(buffer.data(), static_cast<std::size_t>(size));
    }
    EXPECT_THAT(text, HasSubstr(wanted));
    return text;
  }

  void answer(const std::string& password) const {
    // What is typed before it stops showing the letters is thrown away.
    EXPECT_TRUE(x11_tests::waitUntil([this] {
      termios settings{};
      return ::tcgetattr(terminal_, &settings) == 0 && (settings.c_lflag & ECHO) == 0;
    }));
    const auto line = password + "\n";
    EXPECT_EQ(::write(terminal_, line.data(), line.size()), static_cast<ssize_t>(line.size()));
  }

 private:
  int terminal_ = -1;
  pid_t process_ = 0;
};

class ServiceDialogue : public MachineService {
 protected:
  Dialogue dialogue_{login, caller->process()};
};

TEST_F(ServiceDialogue, asks_in_vorrin_s_words_and_a_wrong_password_is_a_no) {
  caller->start("?Connect");
  const auto asked = dialogue_.readUntil("Password:");
  EXPECT_THAT(asked, HasSubstr("Vorrin wants to hear its shortcut keys"));
  EXPECT_THAT(asked, HasSubstr("keeper"));
  dialogue_.answer("incorrect horse");
  EXPECT_THAT(caller->take()->error, HasSubstr("not given"));
}

TEST_F(ServiceDialogue, the_right_password_connects_and_once_more_for_some_minutes) {
  caller->start("?Connect");
  dialogue_.readUntil("Password:");
  dialogue_.answer(rightPassword);
  auto answer = caller->take();
  ASSERT_TRUE(answer && answer->socket.isOpen()) << answer->error;
  peer.emplace(std::move(answer->socket));
  ASSERT_NO_FATAL_FAILURE(holdKeyboard());
  EXPECT_TRUE(std::filesystem::is_empty(decisions));
  ASSERT_TRUE(succeeds("systemctl kill -s KILL vorrin-input-helper.service"));
  EXPECT_TRUE(until([this] { return peer->isLeft(); }));
  EXPECT_TRUE(until([this] { return caller->call("Connect").socket.isOpen(); }));
  EXPECT_THAT(Caller(login).call("Connect").error, testing::Not("")) << "that one alone";
}

TEST_F(ServiceDialogue, allowing_for_good_asks_once_in_words_of_its_own) {
  caller->start("?AllowForGood");
  EXPECT_THAT(dialogue_.readUntil("Password:"), HasSubstr("from now on without asking"));
  dialogue_.answer(rightPassword);
  EXPECT_EQ(caller->take()->error, "");
  auto answer = Caller(login).call("Connect");
  EXPECT_EQ(answer.error, "");
}

}  // namespace
}  // namespace vorrin::machine
