#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>

#include "amounts.h"

int main(int count, char** arguments) {
  testing::InitGoogleTest(&count, arguments);
  if (!vorrin::faults::readAmounts(count, arguments)) {
    std::cerr << "usage: vorrin_fault_tests [--NAME NUMBER]... (names: see amounts.h)\n";
    return EXIT_FAILURE;
  }
  return RUN_ALL_TESTS();
}
