#include "platform/linux/foundation/lock_patience.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using namespace std::chrono_literals;

class LockPatienceTest : public DefaultsSandbox {
 protected:
  using Clock = std::chrono::steady_clock;

  LockPatienceTest() { fill(file, ""); }

  /// How long one operation waits for a lock that it never gets. `eachMoment` is called meanwhile.
  template <typename Action>
  Clock::duration waitInVain(Action eachMoment) {
    const auto begin = Clock::now();
    patience.beginOperation();
    while (patience.waitOn()) eachMoment(Clock::now() - begin);
    patience.endOperation(true);
    return Clock::now() - begin;
  }

  Clock::duration waitInVain() {
    return waitInVain([](Clock::duration) {});
  }

  const std::filesystem::path file = root / "file";
  LockPatience patience{file};
};

TEST_F(LockPatienceTest, waits_for_about_a_second_and_then_only_for_a_moment) {
  const auto first = waitInVain();
  EXPECT_GE(first, 1s);
  EXPECT_LT(first, 3s);
  const auto second = waitInVain();
  EXPECT_GE(second, 50ms);
  EXPECT_LT(second, 500ms);
}

TEST_F(LockPatienceTest, is_back_after_a_success) {
  waitInVain();
  patience.beginOperation();
  patience.endOperation(false);
  EXPECT_GE(waitInVain(), 1s);
}

TEST_F(LockPatienceTest, is_back_when_another_process_has_changed_the_file) {
  waitInVain();
  fill(file, "changed");
  EXPECT_GE(waitInVain(), 1s);
}

TEST_F(LockPatienceTest, lasts_longer_while_others_change_the_file) {
  Clock::duration lastChange{};
  const auto waited = waitInVain([&](Clock::duration elapsed) {
    if (lastChange >= 1200ms) return;
    fill(file, std::to_string(elapsed.count()));
    lastChange = elapsed;
  });
  EXPECT_GE(lastChange, 1200ms);
  EXPECT_GE(waited, lastChange + 1s);
}

}  // namespace
}  // namespace vorrin
