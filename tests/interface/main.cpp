#include <gtest/gtest.h>

#include "driver.h"
#include "platform/application.h"
#include "private_home.h"

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  // The tests can be listed without a screen.
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  const vorrin::PrivateHome home;
  vorrin::driver::prepareEnvironment(home.path);
  const vorrin::Application application(argumentCount, arguments);
  vorrin::driver::applicationWasMade();
  return RUN_ALL_TESTS();
}
