#pragma once

#include <gtest/gtest.h>

#include "detach_engine.h"
#include "platform/fake/system/fake_system.h"
#include "platform/fake/time/fake_time.h"

namespace vorrin::test {

/// A case on a fresh fake system, with the clock at 0 and the program's engine as at its start.
class SystemTest : public testing::Test {
 protected:
  SystemTest() { reset(); }
  ~SystemTest() override { reset(); }

 private:
  static void reset() {
    detachEngine();
    engine.enabled = {true, true};
    engine.intervals = {0.05, 0.001};
    engine.keys = {50, 48};
    engine.digit = 1;
    fake::resetTime();
    fake::resetSystem();
  }
};

}  // namespace vorrin::test
