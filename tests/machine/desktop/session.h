#pragma once

#include <memory>
#include <string>
#include <vector>

#include "tests/machine/login.h"
#include "tests/x11/harness/picture.h"
#include "tests/x11/harness/process.h"

namespace vorrin::machine {

using x11_tests::Box;
using x11_tests::Environment;
using x11_tests::Picture;
using x11_tests::Process;

/// The application id of the client that the tests put in front of Vorrin.
inline constexpr const char* loggingClient = "logging-client";

/// That of Vorrin's window.
inline constexpr const char* vorrinWindow = "org.vorrin.Vorrin";

inline constexpr const char* screenshot = "/home/player/screenshot.png";

/// A window as the compositor has it, in points of the screen.
struct ShownWindow {
  bool hasKeyboard = false;
  bool isFullScreen = false;
  int x = 0, y = 0, width = 0, height = 0;
};

/// What shows the windows.
enum class Compositor {
  sway,   ///< on a screen in memory, told by its own commands what to do
  weston  ///< of another family, on a graphics card; only a user can tell it what to do
};

/// A compositor with libinput below, in a session of the ordinary user's.
class DesktopSession {
 public:
  explicit DesktopSession(Compositor compositor = Compositor::sway);

  [[nodiscard]] Compositor compositor() const { return compositor_; }

  /// A program of the session.
  [[nodiscard]] std::unique_ptr<Process> start(const std::vector<std::string>& command) const;
  /// What one prints; it has to succeed.
  std::string outputOf(const std::vector<std::string>& command) const;

  /// Whether the compositor has the device of this name open.
  [[nodiscard]] bool hasInput(const std::string& name) const;
  /// Ends the compositor without a chance to say so.
  void kill() const;

  // What follows only sway can be told.

  /// Gives the keyboard to the window with this application id, Vorrin's or the client's, and moves
  /// the pointer over it.
  void focus(const std::string& application) const;
  /// Gives it the keyboard, as the compositor's own key does: the pointer stays where it is.
  void switchTo(const std::string& application) const;
  /// Moves the pointer to this place of the screen.
  void pointAt(int x, int y) const;
  /// Clicks there, as a user.
  void click() const;
  /// Has the compositor do this to Vorrin's window.
  void arrangeVorrin(const std::string& what) const;
  /// Vorrin's window, which has to be the only one that it has.
  [[nodiscard]] ShownWindow vorrin() const;
  [[nodiscard]] std::string tree() const;
  /// Leaves a picture of the desktop in `screenshot`.
  void takeScreenshot() const;
  /// What the screen shows.
  [[nodiscard]] Picture picture() const;

 private:
  void command(const std::string& text) const;

  const Login& login_ = playerLogin();
  Compositor compositor_;
  std::unique_ptr<Process> process_;
};

}  // namespace vorrin::machine
