#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "keys.h"
#include "settings/preset.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/other_client.h"
#include "tests/x11/harness/program.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"
#include "tests/x11/harness/windows.h"

namespace vorrin::x11_tests {

/// Vorrin as a user has it: its own process on a desktop, and somebody else's program in front.
struct EndToEndTest : testing::Test {
  /// Leads this process to a home of its own, as the program is led there.
  explicit EndToEndTest(Desktop& place = Desktop::shared());

  static constexpr int keyboardMacro = 0;
  static constexpr int mouseMacro = 1;

  Home home;
  Desktop& desktop;
  User user{desktop.display()};
  OtherClient probe{desktop.display()};
  Windows windows{desktop.display()};

  /// What is stored before the program starts. Both macros act a hundred times a second.
  Preset settings{{0.01, 0.01}, {keys::backtick, keys::tab}, 1, {true, true}};

  std::unique_ptr<Program> program;
  std::unique_ptr<Client> client;

  /// Stores `settings` and starts the program and the client, the client in front and the pointer
  /// on it.
  void start();

  /// Starts the program alone, with what is stored. Returns when its window is in front and it
  /// knows.
  void startProgram();

  /// Ends the program as a crash would.
  void kill();

  [[nodiscard]] unsigned long vorrinWindow();

  /// Puts a window in front, with the pointer on it, and waits until Vorrin has noticed. A click
  /// into a window puts it in front as well, so the pointer must not stay with another one.
  void showVorrin();
  void showClient();

  /// The settings that are stored now.
  [[nodiscard]] static Preset stored();

  /// Has the user start both macros, and waits until they act.
  void startMacros();

  /// Waits for some actions of a macro to arrive at the client.
  void expectActions(int macro);

  /// Nobody presses a key or a button for so long, into whatever window.
  void expectNothingPressed(std::chrono::milliseconds duration = std::chrono::milliseconds(300));

  /// Waits for the macros to fall silent; fails when they do not.
  void expectSilence();

  /// The server's key code of the keyboard macro's digit.
  [[nodiscard]] unsigned digitKey() const;

  /// The macros' actions among `events`.
  [[nodiscard]] std::size_t actionsAmong(const std::vector<ClientEvent>& events) const;

 private:
  void waitUntilListening();
};

}  // namespace vorrin::x11_tests
