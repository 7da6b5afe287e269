#include "platform/linux/input/x11/server_clock.h"

#include <gtest/gtest.h>

namespace vorrin::x11 {
namespace {

using std::chrono::milliseconds;

TEST(ServerClockTest, an_event_read_at_once_has_no_age) {
  ServerClock clock;
  clock.set(5000, milliseconds(100));
  EXPECT_EQ(clock.age(6000, milliseconds(1100)), milliseconds(0));
}

TEST(ServerClockTest, an_event_read_late_is_as_old_as_the_delay) {
  ServerClock clock;
  clock.set(5000, milliseconds(100));
  EXPECT_EQ(clock.age(5000, milliseconds(2100)), milliseconds(2000));
}

TEST(ServerClockTest, the_promptest_event_sets_the_measure) {
  ServerClock clock;
  clock.set(5000, milliseconds(130));
  EXPECT_EQ(clock.age(5010, milliseconds(110)), milliseconds(0));
  EXPECT_EQ(clock.age(5020, milliseconds(150)), milliseconds(30));
}

TEST(ServerClockTest, the_servers_clock_may_wrap_around) {
  ServerClock clock;
  clock.set(0xFFFFFFF0U, milliseconds(1000));
  EXPECT_EQ(clock.age(16, milliseconds(1032)), milliseconds(0));
  EXPECT_EQ(clock.age(16, milliseconds(1532)), milliseconds(500));
}

TEST(ServerClockTest, nothing_is_old_before_the_clock_is_set) {
  ServerClock clock;
  EXPECT_EQ(clock.age(5000, milliseconds(100000)), milliseconds(0));
}

TEST(ServerClockTest, setting_the_clock_anew_forgets_a_drift) {
  ServerClock clock;
  clock.set(5000, milliseconds(100));
  EXPECT_EQ(clock.age(6000, milliseconds(4100)), milliseconds(3000));
  clock.set(6000, milliseconds(4100));
  EXPECT_EQ(clock.age(6000, milliseconds(4100)), milliseconds(0));
}

}  // namespace
}  // namespace vorrin::x11
