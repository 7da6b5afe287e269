#pragma once

#include <gtest/gtest.h>

#include "engine/engine.h"
#include "platform/fake/time/fake_time.h"

namespace vorrin::test {

/// A case on an engine of its own that counts what it asks for, with the clock at 0.
class EngineTest : public testing::Test {
 protected:
  EngineTest() {
    fake::resetTime();
    macros.emit = [this](int macro) { ++actions[macro]; };
    macros.changed = [this] { ++changes; };
    macros.permitted = [this] {
      ++questions;
      return permission;
    };
  }
  ~EngineTest() override { fake::resetTime(); }

  Engine macros;
  PerMacro<int> actions{0, 0};
  int changes = 0;
  int questions = 0;
  bool permission = true;
};

}  // namespace vorrin::test
