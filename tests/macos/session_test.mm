#import <AppKit/AppKit.h>

#include <gmock/gmock.h>

#include "platform/macos/foundation/notification_observer.h"
#include "platform/macos/widgets/running_instance.h"
#include "platform/workspace.h"

// What the session tells and holds, asked of the system itself.

namespace vorrin {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MacosWorkspace : public testing::Test {
 protected:
  static void send(NSNotificationName name) {
    NSWorkspace* workspace = NSWorkspace.sharedWorkspace;
    [workspace.notificationCenter postNotificationName:name object:workspace];
  }

  std::vector<std::string> told;
  std::shared_ptr<void> observer =
      observeWorkspace({.willSleep = [this] { told.push_back("sleep"); },
                        .sessionDidResignActive = [this] { told.push_back("away"); },
                        .sessionActivityDidChange = [this] { told.push_back("changed"); }});
};

TEST_F(MacosWorkspace, sleep_is_told) {
  send(NSWorkspaceWillSleepNotification);
  EXPECT_THAT(told, ElementsAre("sleep"));
}

TEST_F(MacosWorkspace, a_session_switched_away_and_back_is_told_and_known) {
  // The two notices move the session from active to away and back, so it has to be active first. A
  // Mac worked from afar or at its lock screen is not, and no program can make it so.
  if (!sessionIsActive()) GTEST_SKIP() << "not run: nobody is at this session, or it is locked";
  send(NSWorkspaceSessionDidResignActiveNotification);
  EXPECT_FALSE(sessionIsActive());
  send(NSWorkspaceSessionDidBecomeActiveNotification);
  EXPECT_TRUE(sessionIsActive());
  EXPECT_THAT(told, ElementsAre("away", "changed", "changed"));
}

TEST_F(MacosWorkspace, nothing_is_told_once_nobody_observes) {
  observer.reset();
  send(NSWorkspaceWillSleepNotification);
  EXPECT_THAT(told, IsEmpty());
}

TEST(MacosDistributedNotice, arrives_from_the_session_while_it_is_observed) {
  NSString* name = NSUUID.UUID.UUIDString;
  bool told = false;
  const auto observer = observeDistributed(name, [&told] { told = true; });
  [NSDistributedNotificationCenter.defaultCenter postNotificationName:name
                                                               object:nil
                                                             userInfo:nil
                                                   deliverImmediately:YES];
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:5];
  while (!told && end.timeIntervalSinceNow > 0) {
    [NSRunLoop.mainRunLoop runUntilDate:[NSDate dateWithTimeIntervalSinceNow:0.01]];
  }
  EXPECT_TRUE(told);
}

TEST(MacosRunningInstance, is_found_by_its_bundle_identifier) {
  NSRunningApplication* finder = otherInstance(@"com.apple.finder");
  // The one program that a session has without a test's starting it, unless it was ended by hand or
  // nobody is logged in on the screen.
  if (finder == nil) GTEST_SKIP() << "not run: no Finder runs in this session";
  EXPECT_TRUE([finder.bundleIdentifier isEqualToString:@"com.apple.finder"]);
}

TEST(MacosRunningInstance, is_none_where_nobody_has_the_identifier) {
  EXPECT_EQ(otherInstance(@"org.vorrin.Nobody"), nil);
}

TEST(MacosRunningInstance, is_never_this_process_or_asked_for_without_a_bundle) {
  ASSERT_EQ(NSBundle.mainBundle.bundleIdentifier, nil);
  EXPECT_FALSE(reopenRunningInstance());
}

}  // namespace
}  // namespace vorrin
