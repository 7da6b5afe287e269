#include "platform/fake/system/fake_system.h"

#include <gtest/gtest.h>

#include <string>

#include "platform/application_activity.h"
#include "platform/workspace.h"
#include "support/required.h"

namespace vorrin {
namespace {

class FakeSystemTest : public testing::Test {
 protected:
  FakeSystemTest() { fake::resetSystem(); }
  ~FakeSystemTest() override { fake::resetSystem(); }
};

TEST_F(FakeSystemTest, a_change_of_activity_is_told_once) {
  int changes = 0;
  observeApplicationActivity([&] { ++changes; });
  fake::setApplicationActive(true);
  fake::setApplicationActive(true);
  EXPECT_TRUE(applicationIsActive());
  EXPECT_EQ(changes, 1);
}

TEST_F(FakeSystemTest, there_is_one_observer_of_activity) {
  std::string told;
  observeApplicationActivity([&] { told += 'a'; });
  observeApplicationActivity([&] { told += 'b'; });
  fake::setApplicationActive(true);
  observeApplicationActivity(nullptr);
  fake::setApplicationActive(false);
  EXPECT_EQ(told, "b");
}

TEST_F(FakeSystemTest, workspace_news_reach_every_observer_that_lives) {
  std::string told;
  const auto first = observeWorkspace(
      {.willSleep = [&] { told += 's'; },
       .sessionDidResignActive = [&] { told += sessionIsActive() ? '!' : 'r'; },
       .sessionActivityDidChange = [&] { told += sessionIsActive() ? 'a' : 'i'; }});
  auto second = observeWorkspace({.willSleep = [&] { told += '2'; },
                                  .sessionDidResignActive = {},
                                  .sessionActivityDidChange = {}});
  fake::sendWillSleep();
  fake::sendSessionDidResignActive();
  fake::setSessionActive(true);
  second.reset();
  fake::sendWillSleep();
  EXPECT_EQ(told, "s2rias");
}

TEST_F(FakeSystemTest, openings_of_the_settings_are_counted) {
  openAccessibilitySettings();
  EXPECT_EQ(fake::system().settingsOpenings, 1U);
}

TEST_F(FakeSystemTest, a_tap_swallows_only_what_it_claimed) {
  const std::uint16_t claimed = 50;
  const EventTap tap = test::required(EventTap::create(
      0x400, [](const TapEvent&) { return TapVerdict::swallow; }, [] {}));
  EXPECT_EQ(fake::feed({.keyCode = 50}), TapVerdict::pass);
  tap.addToMainRunLoop();
  EXPECT_EQ(fake::feed({.keyCode = 50}), TapVerdict::pass);
  tap.setEnabled(true);
  ASSERT_TRUE(tap.claim({&claimed, 1}));
  EXPECT_EQ(fake::feed({.keyCode = 50}), TapVerdict::swallow);
  EXPECT_EQ(fake::feed({.keyCode = 48}), TapVerdict::pass);
  EXPECT_EQ(fake::feed({.type = EventType::keyUp, .keyCode = 50}), TapVerdict::pass);
}

TEST_F(FakeSystemTest, a_tap_nobody_refers_to_any_more_is_gone) {
  auto tap = EventTap::create(
      0x400, [](const TapEvent&) { return TapVerdict::pass; }, [] {});
  EXPECT_EQ(fake::livingTaps(), 1U);
  tap.reset();
  EXPECT_EQ(fake::livingTaps(), 0U);
}

}  // namespace
}  // namespace vorrin
