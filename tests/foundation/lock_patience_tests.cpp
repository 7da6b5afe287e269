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

TEST_F(LockPatienceTest, waits_for_about_a_second_and_then_not_again) {
  const auto first = waitInVain();
  EXPECT_GE(first, 1s);
  EXPECT_LT(first, 3s);
  EXPECT_LT(waitInVain(), 500ms);
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
  const auto waited = waitInVain([&](Clock::duration elapsed) {
    if (elapsed < 1500ms) fill(file, std::to_string(elapsed.count()));
  });
  EXPECT_GE(waited, 2400ms);
}

}  // namespace
}  // namespace vorrin
