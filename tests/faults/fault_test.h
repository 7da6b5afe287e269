#pragma once

#include <random>
#include <string>

#include "amounts.h"
#include "end_to_end_test.h"

namespace vorrin::faults {

using namespace x11_tests;

/// The program at work, about to be hurt.
struct FaultTest : OwnDesktop, EndToEndTest {
  FaultTest() : EndToEndTest(ownDesktop) {}

  std::mt19937 random{static_cast<std::mt19937::result_type>(amount("SEED", 1))};

  /// A moment somewhere within `bound` passes.
  void passMoment(std::chrono::microseconds bound);

  /// The keys and buttons that are down, whoever pressed them, in words: "key 38". Empty when
  /// nothing is.
  [[nodiscard]] std::string heldInput() const;

  /// The user can work: nothing is held down, and a letter typed arrives at the client.
  void expectUsableInput();

  /// The program starts on what was left to it, listens, and both macros work.
  void expectWorkingProgram();
};

}  // namespace vorrin::faults
