#include "amounts.h"

#include <cstdlib>
#include <iostream>
#include <string>

namespace vorrin::faults {

std::int64_t amount(const char* name, std::int64_t usual) {
  const std::string variable = std::string("VORRIN_FAULT_") + name;
  const char* const value = std::getenv(variable.c_str());
  const std::int64_t chosen = value == nullptr ? usual : std::stoll(value);
  std::cout << variable << '=' << chosen << '\n';
  return chosen;
}

}  // namespace vorrin::faults
