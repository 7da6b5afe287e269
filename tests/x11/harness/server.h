#pragma once

#include <memory>
#include <string>

#include "tests/x11/harness/process.h"

namespace vorrin::x11_tests {

/// A private X server without a screen to look at, on a display number of its own choice.
class Server {
 public:
  Server();

  /// What DISPLAY has to be for its clients.
  [[nodiscard]] const std::string& display() const { return display_; }

  [[nodiscard]] Process& process() { return process_; }

 private:
  Process process_;
  std::string display_;
};

/// A server with a window manager in front of which windows get the focus as on a user's desktop.
class Desktop {
 public:
  Desktop();

  [[nodiscard]] const std::string& display() const { return server_.display(); }
  [[nodiscard]] Server& server() { return server_; }

  /// One for all tests of this process that leave it as it was.
  static Desktop& shared();

  /// Ends the window manager as a crash would.
  void killWindowManager();

  /// Starts a window manager and waits until it is at work.
  void startWindowManager();

 private:
  Server server_;
  std::unique_ptr<Process> windowManager_;
};

/// The base of a test that harms its desktop.
struct OwnDesktop {
  Desktop ownDesktop;
};

}  // namespace vorrin::x11_tests
