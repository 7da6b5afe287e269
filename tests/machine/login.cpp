#include "login.h"

#include <grp.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pwd.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "input_helper/protocol/packet_socket.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {
namespace {

/// Opening a session takes long in the test machine.
constexpr std::chrono::seconds sessionPatience{90};

std::string sessionAt(const std::string& user, const std::string& console) {
  // Newer ones list more before the console.
  return outputOf("loginctl list-sessions --no-legend | awk '$3 == \"" + user + "\" && / " +
                  console + "( |$)/ { print $1 }'");
}

void sendAnswer(int socket, const std::string& text, int descriptor) {
  iovec part{const_cast<char*>(text.data()), text.size()};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (descriptor >= 0) {
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    std::memcpy(CMSG_DATA(header), &descriptor, sizeof descriptor);
  }
  if (::sendmsg(socket, &message, MSG_NOSIGNAL) < 0) ::_exit(1);
}

/// Calls what it reads, until the test is gone.
[[noreturn]] void serveCalls(int socket) {
  sd_bus* bus = nullptr;
  if (sd_bus_open_system(&bus) < 0) ::_exit(1);
  std::array<char, 64> buffer{};
  for (ssize_t size = 0; (size = ::recv(socket, buffer.data(), buffer.size() - 1, 0)) > 0;) {
    buffer.at(static_cast<std::size_t>(size)) = 0;
    const bool mayAsk = buffer[0] == '?';
    sd_bus_message* call = nullptr;
    sd_bus_message* reply = nullptr;
    sd_bus_error error = SD_BUS_ERROR_NULL;
    sd_bus_message_new_method_call(bus, &call, "org.vorrin.InputHelper", "/org/vorrin/InputHelper",
                                   "org.vorrin.InputHelper", buffer.data() + (mayAsk ? 1 : 0));
    sd_bus_message_set_allow_interactive_authorization(call, mayAsk ? 1 : 0);
    int descriptor = -1;
    constexpr std::uint64_t limit = 120'000'000;
    if (sd_bus_call(bus, call, limit, &error, &reply) >= 0 &&
        sd_bus_message_has_signature(reply, "h") > 0) {
      sd_bus_message_read(reply, "h", &descriptor);
    }
    sendAnswer(socket, std::string("=") + (error.message == nullptr ? "" : error.message),
               descriptor);
    sd_bus_message_unref(reply);
    sd_bus_message_unref(call);
  }
  ::_exit(0);
}

}  // namespace

bool succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

std::string outputOf(const std::string& command) {
  std::FILE* const pipe = ::popen(command.c_str(), "r");
  std::array<char, 1024> line{};
  if (pipe == nullptr || std::fgets(line.data(), line.size(), pipe) == nullptr) line[0] = 0;
  if (pipe != nullptr) ::pclose(pipe);
  std::string text = line.data();
  if (text.ends_with('\n')) text.pop_back();
  return text;
}

Login::Login(const User& user, int console)
    : user_(user), unit_(user.name + "-on-tty" + std::to_string(console)) {
  const auto tty = "tty" + std::to_string(console);
  const bool isStarted =
      succeeds("systemd-run --quiet --collect --unit=" + unit_ + " -p User=" + user.name +
               " -p PAMName=login -p TTYPath=/dev/" + tty +
               " -p \"Environment=XDG_SEAT=seat0 XDG_SESSION_TYPE=wayland XDG_VTNR=" +
               std::to_string(console) + "\" sleep infinity");
  const auto slice = "/sys/fs/cgroup/user.slice/user-" + std::to_string(user.number) + ".slice/";
  const bool isIn = isStarted && x11_tests::waitUntil(
                                     [&] {
                                       id_ = sessionAt(user.name, tty);
                                       group_ = slice + "session-" + id_ + ".scope";
                                       return std::filesystem::exists(group_ + "/cgroup.procs");
                                     },
                                     sessionPatience);
  if (!isIn) throw std::runtime_error(user.name + " cannot log in");
}

Login::~Login() {
  succeeds("systemctl stop " + unit_);
}

void Login::enter() const {
  std::ofstream(group_ + "/cgroup.procs") << ::getpid();
  if (::initgroups(user_.name.c_str(), user_.number) != 0 ||
      ::setresgid(user_.number, user_.number, user_.number) != 0 ||
      ::setresuid(user_.number, user_.number, user_.number) != 0) {
    ::_exit(126);
  }
}

std::vector<std::string> Login::inside(const std::vector<std::string>& command) const {
  std::vector<std::string> words = {"sh", "-c",
                                    "echo $$ >\"$0\" && exec setpriv --reuid=" + user_.name +
                                        " --regid=" + user_.name + " --init-groups \"$@\"",
                                    group_ + "/cgroup.procs"};
  words.insert(words.end(), command.begin(), command.end());
  return words;
}

int Login::run(const std::function<int()>& action) const {
  const pid_t child = ::fork();
  if (child == 0) {
    enter();
    ::_exit(action());
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

const Login& playerLogin() {
  static const Login login(player);
  return login;
}

void allow(const User& user) {
  const auto file = decisions + "/allow " + std::to_string(user.number) + " " + user.name;
  const passwd* const helper = ::getpwnam("vorrin-input");
  std::filesystem::create_directory(decisions);
  std::ofstream(file).close();
  for (const auto& path : {decisions, file}) {
    EXPECT_EQ(::chown(path.c_str(), helper->pw_uid, helper->pw_gid), 0);
  }
}

void forgetDecisions() {
  std::error_code failure;
  for (const auto& file : std::filesystem::directory_iterator(decisions, failure)) {
    std::filesystem::remove(file);
  }
}

Caller::Caller(const Login& login) {
  auto ends = helper_protocol::makeSocketPair().value();
  process_ = ::fork();
  if (process_ == 0) {
    // Nothing of the test's own may stay open here, its keyboards least of all.
    constexpr int socket = STDERR_FILENO + 1;
    ::dup2(ends.second.get(), socket);
    ::closefrom(socket + 1);
    login.enter();
    serveCalls(socket);
  }
  socket_ = std::move(ends.first);
}

Caller::~Caller() {
  ::kill(process_, SIGKILL);
  ::waitpid(process_, nullptr, 0);
}

void Caller::start(const std::string& method) const {
  ASSERT_EQ(::send(socket_.get(), method.data(), method.size(), MSG_NOSIGNAL),
            static_cast<ssize_t>(method.size()));
}

std::optional<Caller::Answer> Caller::take() const {
  std::array<char, 512> text{};
  iovec part{text.data(), text.size() - 1};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  pollfd waited{socket_.get(), POLLIN, 0};
  if (::poll(&waited, 1, 60'000) != 1) return std::nullopt;
  if (::recvmsg(socket_.get(), &message, MSG_CMSG_CLOEXEC) <= 0) return std::nullopt;
  Answer answer{text.data() + 1, {}};
  if (const cmsghdr* header = CMSG_FIRSTHDR(&message); header != nullptr) {
    int descriptor = -1;
    std::memcpy(&descriptor, CMSG_DATA(header), sizeof descriptor);
    answer.socket = FileDescriptor(descriptor);
  }
  return answer;
}

Caller::Answer Caller::call(const std::string& method) const {
  start(method);
  auto answer = take();
  return answer ? std::move(*answer) : Answer{"no answer", {}};
}

}  // namespace vorrin::machine
