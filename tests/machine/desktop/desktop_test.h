#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "session.h"
#include "tests/machine/event_watch.h"
#include "tests/machine/uhid_keyboard.h"

namespace vorrin::machine {

inline constexpr const char* readyStatus = "accessibility=true eventTap=true ready=true\n";
inline constexpr const char* refusedStatus = "accessibility=false eventTap=false ready=false\n";

/// What Vorrin's status file says.
std::string status();

/// What the client says of a key.
std::string keyLine(int key, bool isDown);

/// Vorrin's real window on a real Wayland desktop, with another program in front that says what it
/// receives, and a keyboard of the kernel's. Runs in the test machine, as root.
class WaylandDesktop : public testing::Test {
 protected:
  /// The desktop starts slowly in the test machine, so the tests of a suite share one. It ends with
  /// them, for other suites have a Vorrin of their own.
  static void SetUpTestSuite() { useDesktop(Compositor::sway); }
  static void TearDownTestSuite() { endDesktop(); }
  static void useDesktop(Compositor compositor);
  static void endDesktop();
  void TearDown() override;

  /// Vorrin with these settings, connected, and the other program in front of it. Starting takes
  /// long in the test machine, so one that runs with the same settings is used again.
  void startVorrin(const std::string& keyInterval, const std::string& clickInterval, int digit);
  /// Without that: the next one starts anew.
  static void endVorrin() { vorrin_.reset(); }

  /// Until keys come through the keyboard's clone.
  bool untilKeyboardHeld();
  /// Puts the other program in front, or Vorrin.
  void focusClient();
  static void focusVorrin();

  /// What the client says until it is silent for `silence`.
  static std::vector<std::string> takeLines(std::chrono::milliseconds silence);
  /// Reads what the client says until `wanted` came `count` times.
  static std::vector<std::string> readUntil(const std::string& wanted, long count = 1);

  /// Whether the client says `wanted` within `bound`.
  static bool comes(const std::string& wanted, std::chrono::milliseconds bound);

  /// A press and a release, far enough apart to be two for everybody.
  static void toggle(int key);

  static inline std::unique_ptr<UhidKeyboard> keyboard_;
  static inline std::unique_ptr<DesktopSession> session_;
  static inline std::unique_ptr<Process> vorrin_;
  EventWatch watch_;

 private:
  bool keysComeDirectly();

  static inline std::unique_ptr<Process> client_;
  static inline std::string settings_;
};

}  // namespace vorrin::machine
