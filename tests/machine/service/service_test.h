#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tests/machine/event_watch.h"
#include "tests/machine/login.h"
#include "tests/machine/peer.h"
#include "tests/machine/uhid_keyboard.h"

namespace vorrin::machine {

inline constexpr const char* keyboardName = "Test keyboard";
inline constexpr const char* keyboardPlace = "test/Test keyboard";
inline constexpr const char* ownPlace = "vorrin-input-helper";

/// A key's press and release as `EventWatch::keys` shows them.
std::string down(int key);
std::string up(int key);

/// The service as the package installs it, run by the real systemd for a session of the real login
/// manager, with a real polkit, between a keyboard of the kernel's and a reader of all devices.
/// Runs in the test machine, as root.
class MachineService : public testing::Test {
 protected:
  MachineService();
  ~MachineService() override;
  static void TearDownTestSuite() { keyboard.reset(); }

  /// Connects a main program of the player's, allowed for good, which is served.
  void start();
  /// The same, with Tab as a shortcut, and the keyboard held.
  void startAndGrab();
  void holdKeyboard();

  bool until(const std::function<bool()>& condition,
             std::chrono::milliseconds limit = std::chrono::seconds(30));
  bool untilSeen(const std::string& key);
  bool untilLeft();
  /// Whether another program would get the keyboard now.
  bool keyboardIsFree();
  bool hasEnded(helper_protocol::EndReason reason);
  /// Types a key and waits until everybody saw it.
  bool typePassing(int key);
  void press(std::initializer_list<int> keys);
  void release(std::initializer_list<int> keys);
  /// The keyboard works for everybody, straight from its own device.
  void expectKeyboardGivenBack();

  [[nodiscard]] static pid_t service();
  static void signalService(int number);

  const Login& login = playerLogin();
  EventWatch watch;
  /// One for all tests of a suite; `reset` unplugs it, and the next test has another.
  static inline std::optional<UhidKeyboard> keyboard;
  std::unique_ptr<Caller> caller;
  std::optional<Peer> peer;
};

/// With a main program that is served.
class StartedHelper : public MachineService {
 protected:
  void SetUp() override { start(); }
};

/// With a helper that holds the keyboard, Tab as a shortcut, and an empty record.
class GrabbedKeyboard : public MachineService {
 protected:
  void SetUp() override { startAndGrab(); }
};

}  // namespace vorrin::machine
