#include "input_helper/opener.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/sysmacros.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

#include "input_helper/log.h"

namespace vorrin::input_helper {
namespace {

using Clock = std::chrono::steady_clock;

// A request is one number: the index of an event device, or one of these.
constexpr unsigned uinputRequest = 0xFFFFFFFE;
constexpr unsigned heartbeat = 0xFFFFFFFF;

constexpr int answerMilliseconds = 500;
constexpr unsigned inputMajor = 13;

FileDescriptor openWanted(unsigned wanted) {
  const bool uinput = wanted == uinputRequest;
  const auto path = uinput ? "/dev/uinput" : "/dev/input/event" + std::to_string(wanted);
  FileDescriptor device(::open(path.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
  struct stat status {};
  if (!device.isOpen() || ::fstat(device.number(), &status) != 0) return {};
  const bool isInput = S_ISCHR(status.st_mode) && (uinput || major(status.st_rdev) == inputMajor);
  return isInput ? std::move(device) : FileDescriptor();
}

/// The request, with the descriptor on its back if there is one.
bool sendDescriptor(int socket, unsigned wanted, const FileDescriptor& device) {
  iovec part{&wanted, sizeof wanted};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  if (device.isOpen()) {
    message.msg_control = control.data();
    message.msg_controllen = control.size();
    cmsghdr* header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(sizeof(int));
    const int number = device.number();
    std::memcpy(CMSG_DATA(header), &number, sizeof number);
  }
  return ::sendmsg(socket, &message, MSG_NOSIGNAL | MSG_DONTWAIT) == sizeof wanted;
}

struct Answer {
  unsigned wanted = 0;
  FileDescriptor device;
};

std::optional<Answer> receiveAnswer(int socket) {
  Answer answer;
  iovec part{&answer.wanted, sizeof answer.wanted};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> control{};
  msghdr message{};
  message.msg_iov = &part;
  message.msg_iovlen = 1;
  message.msg_control = control.data();
  message.msg_controllen = control.size();
  if (::recvmsg(socket, &message, MSG_DONTWAIT | MSG_CMSG_CLOEXEC) <= 0) return std::nullopt;
  const cmsghdr* header = CMSG_FIRSTHDR(&message);
  if (header != nullptr && header->cmsg_type == SCM_RIGHTS) {
    int number = -1;
    std::memcpy(&number, CMSG_DATA(header), sizeof number);
    answer.device = FileDescriptor(number);
  }
  return answer;
}

bool waitReadable(int socket, int milliseconds) {
  pollfd waited{socket, POLLIN, 0};
  return ::poll(&waited, 1, milliseconds) > 0;
}

/// False when the worker is gone.
bool serveRequest(int socket) {
  unsigned wanted = 0;
  const auto size = ::recv(socket, &wanted, sizeof wanted, MSG_DONTWAIT);
  if (size < 0) return errno == EAGAIN || errno == EINTR;
  if (size != sizeof wanted) return false;
  return wanted == heartbeat || sendDescriptor(socket, wanted, openWanted(wanted));
}

/// Whether a worker that closed its socket is about to end by itself, with a status of its own.
bool endsSoon(pid_t worker) {
  const FileDescriptor process(static_cast<int>(::syscall(SYS_pidfd_open, worker, 0)));
  return process.isOpen() && waitReadable(process.number(), answerMilliseconds);
}

}  // namespace

int serveOpener(FileDescriptor socket, pid_t worker) {
  const auto silence = std::chrono::milliseconds(watchdogMilliseconds);
  auto heard = Clock::now();
  bool connected = true;
  while (connected && Clock::now() - heard < silence) {
    if (!waitReadable(socket.number(), watchdogMilliseconds / 4)) continue;
    heard = Clock::now();
    connected = serveRequest(socket.number());
  }
  if (connected) log("its working part hangs and is ended; the keyboards are free");
  if (connected || !endsSoon(worker)) ::kill(worker, SIGKILL);
  int status = 0;
  while (::waitpid(worker, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) ? WEXITSTATUS(status) : 1;
}

FileDescriptor Opener::request(unsigned wanted) const {
  if (::send(number(), &wanted, sizeof wanted, MSG_NOSIGNAL | MSG_DONTWAIT) < 0) return {};
  while (waitReadable(number(), answerMilliseconds)) {
    auto answer = receiveAnswer(number());
    if (!answer) return {};
    // The answer to a request that was given up may come before this one's.
    if (answer->wanted == wanted) return std::move(answer->device);
  }
  return {};
}

FileDescriptor Opener::openEventDevice(unsigned index) const {
  return request(index);
}

FileDescriptor Opener::openUinput() const {
  return request(uinputRequest);
}

void Opener::beat() const {
  const unsigned request = heartbeat;
  // A privileged part that is gone is noticed by waiting on its socket.
  [[maybe_unused]] const auto sent =
      ::send(number(), &request, sizeof request, MSG_NOSIGNAL | MSG_DONTWAIT);
}

}  // namespace vorrin::input_helper
