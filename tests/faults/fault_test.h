#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "amounts.h"
#include "end_to_end_test.h"
#include "settings/preset_store.h"

namespace vorrin::faults {

using namespace x11_tests;

/// Everything that the program stores.
struct Stored {
  Preset settings;
  std::map<std::string, Preset> presets;
  bool operator==(const Stored&) const = default;
};

/// What is stored now, read afresh as a starting program reads it.
Stored readStored();

/// For the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const Stored& stored);

struct OwnDesktop {
  Desktop ownDesktop;
};

/// The program at work, about to be hurt.
struct FaultTest : OwnDesktop, EndToEndTest {
  FaultTest() : EndToEndTest(ownDesktop) {}

  std::mt19937 random{static_cast<std::mt19937::result_type>(amount("SEED", 1))};

  /// Starts what `start` starts and both macros, and waits until they act.
  void startMacros();
  void runMacros();

  /// A moment somewhere within `bound` passes.
  void passMoment(std::chrono::microseconds bound);

  /// How many keys and buttons a second are pressed, by whomever, in a while from now.
  double pressesPerSecond(std::chrono::milliseconds duration);

  /// The keys and buttons that are down, whoever pressed them, in words: "key 38". Empty when
  /// nothing is.
  [[nodiscard]] std::string heldInput() const;

  /// The user can work: nothing is held down, and a letter typed arrives at the client.
  void expectUsableInput();

  /// After another edit nothing lies beside the files of the settings and of the status.
  void expectNoLeftovers() const;

  /// The program starts on what was left to it, listens, and both macros work.
  void expectWorkingProgram();

  [[nodiscard]] std::filesystem::path settingsDirectory() const {
    return home.path() / "config" / "vorrin";
  }
};

}  // namespace vorrin::faults
