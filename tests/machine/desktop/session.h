#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/machine/login.h"
#include "tests/x11/harness/process.h"

namespace vorrin::machine {

using x11_tests::Environment;
using x11_tests::Process;

/// The application id of the client that the tests put in front of Vorrin.
inline constexpr const char* loggingClient = "logging-client";

/// That of Vorrin's window.
inline constexpr const char* vorrinWindow = "org.vorrin.Vorrin";

inline constexpr const char* screenshot = "/home/player/screenshot.png";

/// A sway with libinput below and no screen but one in memory, in a session of the ordinary user's.
class DesktopSession {
 public:
  DesktopSession();

  /// A program of the session.
  [[nodiscard]] std::unique_ptr<Process> start(const std::vector<std::string>& command) const;
  /// What one prints; it has to succeed.
  std::string outputOf(const std::vector<std::string>& command) const;

  /// Gives the keyboard to the window with this application id, Vorrin's or the client's, and moves
  /// the pointer over it.
  void focus(const std::string& application) const;
  /// Moves the pointer to this place of the screen.
  void pointAt(int x, int y) const;
  [[nodiscard]] std::string tree() const;
  /// Whether libinput has the device of this name.
  [[nodiscard]] bool hasInput(const std::string& name) const;
  /// Leaves a picture of the desktop in `screenshot`.
  void takeScreenshot() const;

 private:
  void command(const std::string& text) const;

  const Login& login_ = playerLogin();
  std::unique_ptr<Process> sway_;
};

}  // namespace vorrin::machine
