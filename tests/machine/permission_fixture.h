#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "event_watch.h"
#include "tests/x11/harness/process.h"
#include "tests/x11/harness/wait.h"
#include "uhid_keyboard.h"

namespace vorrin::machine {

inline constexpr const char* readyStatus = "accessibility=true eventTap=true ready=true\n";
inline constexpr const char* refusedStatus = "accessibility=false eventTap=false ready=false\n";

/// Whether a shell says that the command went well.
bool succeeds(const std::string& command);

/// A user logged in at a console, with the system's password dialogue or without.
struct Login {
  std::string user = "player";
  int console = 1;
  bool hasDialogue = false;

  /// What the programs of this user say on standard error.
  [[nodiscard]] std::string log() const { return "/home/" + user + "/log"; }
  /// What the password dialogue showed, a line each.
  [[nodiscard]] std::string dialogues() const { return "/home/" + user + "/dialogues"; }
  [[nodiscard]] std::string answers() const { return "/home/" + user + "/answers"; }
  [[nodiscard]] std::string unit() const { return user + "-session"; }
};

/// A program that uses the keyboards and an ordinary user who may or may not let it: decided by the
/// real polkit for a session of the real login manager. Runs in the test machine, as root.
class Permission : public testing::Test {
 protected:
  Permission();
  ~Permission() override;

  /// `command` in a session of its own.
  void start(const std::string& command, const Login& login = {});
  /// Ends it, and the session with it.
  void end();

  /// Starts a program that asks for the permission, as Vorrin does at launch.
  void startTapProgram(const Login& login = {});
  /// The same, with a permission that lasts and the keyboard in the program's hands.
  void startTrusted();

  /// Gives the tap program a command; whether it answers yes.
  bool command(const std::string& line);
  bool untilTrusted(bool trusted, std::chrono::milliseconds bound = x11_tests::patience);

  /// Whether another program would get the keyboard now.
  bool keyboardIsFree();

  /// What the window's buttons have polkit do, after it asked the administrator.
  static void changePermission(const std::string& term);
  /// What the program said on standard error.
  [[nodiscard]] std::string said() const;
  /// How often the program was told polkit's no.
  [[nodiscard]] long refusals() const;
  /// What the ordinary user's status file says.
  static std::string status();

  EventWatch watch_;
  std::optional<x11_tests::Process> program_;

 private:
  UhidKeyboard keyboard_;
  Login login_;
};

/// With Vorrin's own window, which says what it shows.
class VorrinWindow : public Permission {
 protected:
  static constexpr const char* permissionText =
      "status Permission needed: enable Vorrin in Accessibility. Connection retries automatically.";
  static constexpr const char* connectedText =
      "status Connected · settings persist · starts OFF on every launch";

  /// Starts Vorrin, which shows that it has no permission yet.
  void startVorrin(const Login& login = {});
  /// Reads on to the text that the window is to show.
  bool readUpTo(const std::string& text);
  /// Clicks the button of this title, in the window or its sheet.
  void click(const std::string& title) { program_->writeLine(title); }
};

}  // namespace vorrin::machine
