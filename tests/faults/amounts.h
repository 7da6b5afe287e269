#pragma once

#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>

namespace vorrin::faults {

/// How much is done of what can be done for ever. The variable VORRIN_FAULT_NAME of the environment
/// decides; without it `usual`, which keeps the run of all tests short:
///
///   VORRIN_FAULT_ROUNDS=500      kills of the whole program (usual: 40)
///   VORRIN_FAULT_TICKS=10000000  posted presses and clicks of the soak (usual: 20000)
///   VORRIN_FAULT_STOP=10         seconds for which programs are stopped (usual: 3)
///   VORRIN_FAULT_LAG=400         milliseconds that the server lags by (usual: 20)
///   VORRIN_FAULT_SEED=7          of everything that is random (usual: 1)
inline std::int64_t amount(const std::string& name, std::int64_t usual) {
  const std::string variable = "VORRIN_FAULT_" + name;
  const char* const value = std::getenv(variable.c_str());
  const std::int64_t chosen = value == nullptr ? usual : std::stoll(value);
  std::cout << variable << '=' << chosen << '\n';
  return chosen;
}

}  // namespace vorrin::faults
