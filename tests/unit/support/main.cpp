#include <gtest/gtest.h>

#include "private_home.h"

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  const vorrin::PrivateHome home;
  return RUN_ALL_TESTS();
}
