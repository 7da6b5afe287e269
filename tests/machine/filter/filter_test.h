#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "tests/machine/event_watch.h"
#include "tests/machine/helper_process.h"
#include "tests/machine/uhid_keyboard.h"

namespace vorrin::machine {

inline constexpr const char* keyboardName = "Test keyboard";
inline constexpr const char* ownPlace = "vorrin-input-helper";

/// A key's press and release as `EventWatch::keys` shows them.
std::string down(int key);
std::string up(int key);

/// The real helper between a keyboard of the kernel's and a reader of all devices. Runs in the test
/// machine, as root.
class MachineFilter : public testing::Test {
 protected:
  static constexpr std::chrono::seconds patience{20};

  MachineFilter();

  /// Lets everybody do a little.
  void turn();

  /// Whether `condition` comes true before the tests lose patience.
  bool until(const std::function<bool()>& condition, std::chrono::milliseconds limit = patience);
  bool untilSeen(const std::string& key);
  /// Lets everybody do what they do for this long.
  void pass(std::chrono::milliseconds duration);

  /// Whether another program would get the keyboard now.
  bool keyboardIsFree();

  void start();
  void startAndGrab();
  void forget();

  /// Types a key and waits until it has come through.
  bool typePassing(int key);

  bool untilHelperEnded(std::chrono::milliseconds limit = patience);

  /// The keyboard works for everybody, straight from its own device.
  void expectKeyboardGivenBack();

  const std::string keyboardPlace = "test/" + std::string(keyboardName);
  EventWatch watch;
  std::optional<UhidKeyboard> keyboard;
  std::unique_ptr<HelperProcess> helper;
};

/// With a helper that has said hello.
class StartedHelper : public MachineFilter {
 protected:
  void SetUp() override { start(); }
};

/// With a helper that holds the keyboard, Tab as a shortcut, and an empty record.
class GrabbedKeyboard : public MachineFilter {
 protected:
  void SetUp() override { startAndGrab(); }
};

}  // namespace vorrin::machine
