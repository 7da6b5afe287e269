// machine_authentication_agent DIALOGUES ANSWERS COMMAND [ARGUMENT...]: is the password dialogue of
// the session it is started in, as desktops have one, and then becomes COMMAND.
//
// Writes to the file DIALOGUES what a user would see, a line each:
//   asked ACTION MESSAGE      a dialogue came up
//   administrator NUMBER      whose password it asks for, by the user's number
//   withdrawn                 whoever asked is gone, and the dialogue with it
// and how it ended: "accepted", "wrong" or "cancelled". A user's answers are read from the named
// pipe ANSWERS, a line each: "cancel", or "password WORD". Passwords are not judged here but by the
// program that polkit has for it, which asks the system's.

#include <fcntl.h>
#include <poll.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <systemd/sd-login.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr const char* authority = "org.freedesktop.PolicyKit1";
constexpr const char* objectPath = "/org/vorrin/AuthenticationAgent";
constexpr const char* judge = "/usr/lib/polkit-1/polkit-agent-helper-1";

[[noreturn]] void fail(const char* what) {
  std::perror(what);
  std::_Exit(126);
}

/// The dialogue that is open; there is none while `call` is null.
struct Dialogue {
  sd_bus_message* call = nullptr;
  std::string cookie;
  std::string user;
};

Dialogue& dialogue() {
  static Dialogue dialogue;
  return dialogue;
}

std::FILE*& record() {
  static std::FILE* file = nullptr;
  return file;
}

void close(const char* outcome, bool cancelled) {
  std::fprintf(record(), "%s\n", outcome);
  if (cancelled) {
    sd_bus_reply_method_errorf(dialogue().call, "org.freedesktop.PolicyKit1.Error.Cancelled",
                               "the user closed the dialogue");
  } else {
    sd_bus_reply_method_return(dialogue().call, nullptr);
  }
  sd_bus_message_unref(dialogue().call);
  dialogue() = {};
}

/// Takes over the first of those whose password counts.
void readAdministrators(sd_bus_message* message) {
  const char* kind = nullptr;
  const char* name = nullptr;
  sd_bus_message_enter_container(message, 'a', "(sa{sv})");
  while (sd_bus_message_enter_container(message, 'r', "sa{sv}") > 0) {
    sd_bus_message_read(message, "s", &kind);
    sd_bus_message_enter_container(message, 'a', "{sv}");
    while (sd_bus_message_enter_container(message, 'e', "sv") > 0) {
      unsigned user = 0;
      sd_bus_message_read(message, "s", &name);
      sd_bus_message_read(message, "v", "u", &user);
      std::fprintf(record(), "administrator %u\n", user);
      const passwd* entry = ::getpwuid(user);
      if (dialogue().user.empty() && entry != nullptr) dialogue().user = entry->pw_name;
      sd_bus_message_exit_container(message);
    }
    sd_bus_message_exit_container(message);
    sd_bus_message_exit_container(message);
  }
}

int begin(sd_bus_message* message, void*, sd_bus_error*) {
  const char* action = nullptr;
  const char* text = nullptr;
  const char* icon = nullptr;
  const char* cookie = nullptr;
  if (sd_bus_message_read(message, "sss", &action, &text, &icon) < 0 ||
      sd_bus_message_skip(message, "a{ss}") < 0 || sd_bus_message_read(message, "s", &cookie) < 0) {
    fail("BeginAuthentication");
  }
  // A second one at the same time would be the fault of whoever asks.
  std::fprintf(record(), "asked %s %s\n", action, text);
  if (dialogue().call != nullptr) close("cancelled", true);
  dialogue().cookie = cookie;
  readAdministrators(message);
  dialogue().call = sd_bus_message_ref(message);
  return 1;
}

int withdraw(sd_bus_message* message, void*, sd_bus_error*) {
  if (dialogue().call != nullptr) close("withdrawn", true);
  return sd_bus_reply_method_return(message, nullptr);
}

constexpr sd_bus_vtable agentFunctions[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("BeginAuthentication", "sssa{ss}sa(sa{sv})", "", begin,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("CancelAuthentication", "s", "", withdraw, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

/// Has polkit's own program judge the password, and tell polkit.
bool isRight(const std::string& password) {
  std::array<int, 2> questions{};
  std::array<int, 2> answers{};
  if (::pipe(questions.data()) != 0 || ::pipe(answers.data()) != 0) fail("pipe");
  const pid_t child = ::fork();
  if (child == 0) {
    ::dup2(answers[0], STDIN_FILENO);
    ::dup2(questions[1], STDOUT_FILENO);
    for (const int end : {answers[0], answers[1], questions[0], questions[1]}) ::close(end);
    ::execl(judge, judge, dialogue().user.c_str(), nullptr);
    fail(judge);
  }
  ::close(answers[0]);
  ::close(questions[1]);
  const auto said = dialogue().cookie + "\n" + password + "\n";
  if (::write(answers[1], said.data(), said.size()) != static_cast<ssize_t>(said.size())) {
    fail("write");
  }
  std::string heard;
  std::array<char, 512> buffer{};
  for (ssize_t size = 0; (size = ::read(questions[0], buffer.data(), buffer.size())) > 0;) {
    heard.append(buffer.data(), static_cast<std::size_t>(size));
  }
  ::close(answers[1]);
  ::close(questions[0]);
  ::waitpid(child, nullptr, 0);
  return heard.find("SUCCESS\n") != std::string::npos;
}

void obey(const std::string& answer) {
  constexpr std::string_view word = "password ";
  if (dialogue().call == nullptr) return;
  if (answer.starts_with(word)) {
    const bool right = isRight(answer.substr(word.size()));
    close(right ? "accepted" : "wrong", false);
  } else {
    close("cancelled", true);
  }
}

sd_bus* registerAgent() {
  sd_bus* bus = nullptr;
  char* session = nullptr;
  sd_bus_error error{};
  if (sd_bus_open_system(&bus) < 0 || sd_pid_get_session(0, &session) < 0) fail("session");
  sd_bus_add_object_vtable(bus, nullptr, objectPath,
                           "org.freedesktop.PolicyKit1.AuthenticationAgent", agentFunctions,
                           nullptr);
  if (sd_bus_call_method(bus, authority, "/org/freedesktop/PolicyKit1/Authority",
                         "org.freedesktop.PolicyKit1.Authority", "RegisterAuthenticationAgent",
                         &error, nullptr, "(sa{sv})ss", "unix-session", 1, "session-id", "s",
                         session, "C.UTF-8", objectPath) < 0) {
    fail(error.message);
  }
  return bus;
}

[[noreturn]] void serve(sd_bus* bus, int answers) {
  std::string unfinished;
  std::array<char, 256> buffer{};
  for (;;) {
    while (sd_bus_process(bus, nullptr) > 0) {
    }
    std::array waited = {pollfd{sd_bus_get_fd(bus), static_cast<short>(sd_bus_get_events(bus)), 0},
                         pollfd{answers, POLLIN, 0}};
    if (::poll(waited.data(), waited.size(), -1) < 0) fail("poll");
    if (waited[1].revents == 0) continue;
    const auto size = ::read(answers, buffer.data(), buffer.size());
    if (size < 0) fail("read");
    unfinished.append(buffer.data(), static_cast<std::size_t>(size));
    for (auto feed = unfinished.find('\n'); feed != std::string::npos;
         feed = unfinished.find('\n')) {
      obey(unfinished.substr(0, feed));
      unfinished.erase(0, feed + 1);
    }
  }
}

}  // namespace

int main(int count, char** arguments) {
  if (count < 4) return 2;
  std::array<int, 2> registered{};
  if (::pipe2(registered.data(), O_CLOEXEC) != 0) fail("pipe");
  const pid_t program = ::getpid();
  if (::fork() == 0) {
    // The command's end is the agent's.
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (::getppid() != program) return 0;
    // Both ways, so that the pipe never ends.
    const int answers = ::open(arguments[2], O_RDWR);
    record() = std::fopen(arguments[1], "a");
    if (answers < 0 || record() == nullptr) fail("open");
    std::setvbuf(record(), nullptr, _IOLBF, 0);
    sd_bus* const bus = registerAgent();
    const int own = ::open("/dev/null", O_RDWR);
    for (const int standard : {STDIN_FILENO, STDOUT_FILENO}) ::dup2(own, standard);
    if (::write(registered[1], "", 1) != 1) fail("write");
    serve(bus, answers);
  }
  ::close(registered[1]);
  char there = 0;
  if (::read(registered[0], &there, 1) != 1) fail("no agent");
  ::execv(arguments[3], arguments + 3);
  fail(arguments[3]);
}
