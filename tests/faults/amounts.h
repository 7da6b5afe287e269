#pragma once

#include <cstdint>

namespace vorrin::faults {

/// How much is done of what can be done for ever. "--NAME NUMBER" on the command line decides, then
/// the variable VORRIN_FAULT_NAME of the environment, then `usual`, which keeps the run of all
/// tests short:
///
///   vorrin_fault_tests --rounds 500      kills of the whole program (usual: 60)
///   vorrin_fault_tests --ticks 10000000  posted presses and clicks of the soak (usual: 50000)
///   vorrin_fault_tests --stop 10         seconds for which programs are stopped (usual: 3)
///   vorrin_fault_tests --lag 400         milliseconds that the server lags by (usual: 20)
///   vorrin_fault_tests --seed 7          of everything that is random (usual: 1)
std::int64_t amount(const char* name, std::int64_t usual);

/// Takes the options out of the arguments; false when they make no sense.
bool readAmounts(int& argumentCount, char** arguments);

}  // namespace vorrin::faults
