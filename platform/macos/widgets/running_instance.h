#pragma once

#import <AppKit/AppKit.h>

#include <functional>
#include <memory>

namespace vorrin {

/// An application of this bundle identifier that has finished launching and is not this process;
/// nil when there is none. The system lists those of one login session, so that every user logged
/// in has a Vorrin of their own.
NSRunningApplication* otherInstance(NSString* bundleIdentifier);

/// Asks the Vorrin that runs in the user's session already, if there is one, to show its window.
/// The system itself starts an application only once, but not when its executable is called by its
/// path. False for a program without a bundle, and when there is none.
bool reopenRunningInstance();

/// Calls `asked` on the main thread whenever another start asks this one to show its window, for
/// as long as the value returned lives.
[[nodiscard]] std::shared_ptr<void> observeReopening(std::function<void()> asked);

}  // namespace vorrin
