#pragma once

#include <sys/types.h>

#include <utility>

#include "input_helper/protocol/file_descriptor.h"

namespace vorrin::input_helper {

using helper_protocol::FileDescriptor;

/// How often the unprivileged part has to show that it runs, and after what silence it is ended.
inline constexpr int heartbeatMilliseconds = 250;
inline constexpr int watchdogMilliseconds = 2000;

/// The privileged part of the program: opens input devices for the unprivileged one (process
/// `worker`, at the other end of `socket`), and ends it when it hangs. It holds no device itself,
/// so that whatever ends the worker gives the keyboards back. Returns the worker's exit status.
int serveOpener(FileDescriptor socket, pid_t worker);

/// What the unprivileged part asks for. Every call waits for at most a fraction of the watchdog's
/// time; a descriptor that is not open means no.
class Opener {
 public:
  explicit Opener(FileDescriptor socket) : socket_(std::move(socket)) {}
  [[nodiscard]] FileDescriptor openEventDevice(unsigned index) const;
  [[nodiscard]] FileDescriptor openUinput() const;
  void beat() const;
  /// Readable only when the privileged part is gone.
  [[nodiscard]] int number() const { return socket_.number(); }

 private:
  [[nodiscard]] FileDescriptor request(unsigned wanted) const;
  FileDescriptor socket_;
};

}  // namespace vorrin::input_helper
