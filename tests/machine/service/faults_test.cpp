// Whatever becomes of the helper or its main program, the keyboard is everybody's, with nothing
// held down.

#include <fcntl.h>
#include <sys/ptrace.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <stop_token>
#include <thread>

#include "service_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;

TEST_F(GrabbedKeyboard, the_end_of_the_main_program_gives_the_keyboards_back) {
  press({KEY_LEFTCTRL, KEY_E});
  peer->say(Post{1, {{{0, 1}}}});
  ASSERT_TRUE(untilSeen(down(KEY_E)));
  peer->hangUp();
  EXPECT_TRUE(untilSeen(up(KEY_LEFTCTRL)));
  EXPECT_TRUE(untilSeen(up(BTN_LEFT)));
  release({KEY_E, KEY_LEFTCTRL});
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, killing_the_helper_gives_the_keyboards_back) {
  press({KEY_LEFTCTRL, KEY_E});
  peer->say(Post{1, {{{0, 1}}}});
  ASSERT_TRUE(untilSeen(down(KEY_E)));
  signalService(SIGKILL);
  EXPECT_TRUE(untilSeen(up(KEY_LEFTCTRL)));
  EXPECT_TRUE(untilSeen(up(BTN_LEFT)));
  release({KEY_E, KEY_LEFTCTRL});
  expectKeyboardGivenBack();
  ASSERT_NO_FATAL_FAILURE(startAndGrab()) << "it comes back when it is called";
}

TEST_F(GrabbedKeyboard, a_helper_that_is_stopped_is_ended_by_systemd) {
  press({KEY_LEFTCTRL});
  ASSERT_TRUE(untilSeen(down(KEY_LEFTCTRL)));
  signalService(SIGSTOP);
  EXPECT_TRUE(untilLeft());
  release({KEY_LEFTCTRL});
  expectKeyboardGivenBack();
}

/// Has a process go on otherwise than it would: with other registers, or another instruction where
/// it waits.
class Tracer {
 public:
  explicit Tracer(pid_t process) : process_(process) {
    EXPECT_EQ(::ptrace(PTRACE_ATTACH, process, nullptr, nullptr), 0);
    EXPECT_EQ(::waitpid(process, nullptr, 0), process);
    EXPECT_EQ(::ptrace(PTRACE_GETREGS, process, nullptr, &registers), 0);
  }
  Tracer(const Tracer&) = delete;
  Tracer& operator=(const Tracer&) = delete;
  ~Tracer() {
    EXPECT_EQ(::ptrace(PTRACE_SETREGS, process_, nullptr, &registers), 0);
    EXPECT_EQ(::ptrace(PTRACE_DETACH, process_, nullptr, nullptr), 0);
  }

  void setInstruction(long code) const {
    EXPECT_EQ(::ptrace(PTRACE_POKETEXT, process_, registers.rip, code), 0);
  }

  user_regs_struct registers{};

 private:
  pid_t process_;
};

TEST_F(GrabbedKeyboard, a_helper_that_hangs_is_ended_by_its_own_alarm) {
  constexpr long jumpToItself = 0xFEEB;
  {
    Tracer tracer(service());
    tracer.setInstruction(jumpToItself);
    tracer.registers.orig_rax = ~0UL;
  }
  EXPECT_TRUE(untilLeft());
  expectKeyboardGivenBack();
  EXPECT_EQ(outputOf("systemctl show --property=ExecMainStatus --value vorrin-input-helper"),
            std::to_string(SIGALRM));
}

TEST_F(GrabbedKeyboard, a_system_call_that_it_may_not_use_ends_it_and_frees_the_keyboards) {
  {
    Tracer tracer(service());
    constexpr unsigned long instructionSize = 2;
    tracer.registers.rip -= instructionSize;
    tracer.registers.rax = SYS_mount;
    tracer.registers.orig_rax = ~0UL;
  }
  EXPECT_TRUE(untilLeft());
  expectKeyboardGivenBack();
  EXPECT_EQ(outputOf("systemctl show --property=ExecMainStatus --value vorrin-input-helper"),
            std::to_string(SIGSYS));
}

/// The service with a log that nobody reads and nothing fits into.
class FullLog : public MachineService {
 protected:
  static constexpr const char* pipe = "/run/full-log";
  static constexpr const char* change = "/run/systemd/system/vorrin-input-helper.service.d";

  FullLog() {
    EXPECT_EQ(::mkfifo(pipe, 0600), 0);
    log_ = FileDescriptor(::open(pipe, O_RDWR | O_NONBLOCK | O_CLOEXEC));
    std::filesystem::create_directories(change);
    std::ofstream(std::string(change) + "/log.conf")
        << "[Service]\nStandardError=append:" << pipe << "\n";
    EXPECT_TRUE(succeeds("systemctl daemon-reload && systemctl stop vorrin-input-helper.service"));
  }
  ~FullLog() override {
    std::filesystem::remove_all(change);
    std::filesystem::remove(pipe);
    EXPECT_TRUE(succeeds("systemctl daemon-reload && systemctl stop vorrin-input-helper.service"));
  }

  void fillLog() const {
    const std::string line(4096, '\n');
    for (std::size_t size = line.size(); size > 0; size /= 2) {
      while (::write(log_.get(), line.data(), size) > 0) {
      }
    }
  }

 private:
  FileDescriptor log_;
};

TEST_F(FullLog, holds_nothing_up_and_the_panic_chord_lets_go) {
  ASSERT_NO_FATAL_FAILURE(startAndGrab());
  fillLog();
  press({KEY_ESC, KEY_BACKSPACE, KEY_ENTER});
  EXPECT_TRUE(hasEnded(EndReason::panicChord));
  release({KEY_ESC, KEY_BACKSPACE, KEY_ENTER});
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, words_without_meaning_end_the_connection_and_free_the_keyboards) {
  const auto whole = encode(ToHelper(Configure{1, 1}));
  const std::string configure(reinterpret_cast<const char*>(whole.bytes.data()), whole.size);
  const std::string bad[] = {"x", std::string(60'000, 'x'), configure.substr(0, 3),
                             configure + "more", std::string("\0\0\1\xFF", 4)};
  for (const auto& words : bad) {
    SCOPED_TRACE(words.size());
    peer->sayBytes(words);
    EXPECT_TRUE(untilLeft());
    expectKeyboardGivenBack();
    ASSERT_NO_FATAL_FAILURE(startAndGrab());
  }
}

TEST_F(GrabbedKeyboard, a_peer_that_floods_holds_no_key_up) {
  std::jthread flood([this](const std::stop_token& stop) {
    while (!stop.stop_requested()) peer->configure({KEY_TAB, KEY_GRAVE});
  });
  for (int key = KEY_A; key < KEY_L; ++key) EXPECT_TRUE(typePassing(key));
  press({KEY_ESC, KEY_BACKSPACE, KEY_ENTER});
  EXPECT_TRUE(untilLeft());
  flood = {};
  release({KEY_ESC, KEY_BACKSPACE, KEY_ENTER});
  expectKeyboardGivenBack();
}

TEST_F(GrabbedKeyboard, a_peer_that_reads_nothing_is_left) {
  const Peer deaf = std::move(*peer);
  peer.reset();
  // Escape is told of without a question, until nothing fits into the socket any more.
  EXPECT_TRUE(until([this] {
    watch.forget();
    for (int count = 0; count < 20; ++count) keyboard->tap(KEY_ESC);
    return keyboardIsFree();
  }));
  expectKeyboardGivenBack();
}

}  // namespace
}  // namespace vorrin::machine
