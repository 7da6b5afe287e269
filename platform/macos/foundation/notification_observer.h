#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <memory>

namespace vorrin {

/// Calls `told` for every notification of this name, from any object, before its sender goes on;
/// AppKit sends on the main thread. Ends when the last copy of the value returned goes away.
[[nodiscard]] std::shared_ptr<void> observe(NSNotificationCenter* center, NSNotificationName name,
                                            std::function<void()> told);

/// The same for a notification that any process of the session may send. It is told at once: by
/// default those are held back from an application that is not the active one.
[[nodiscard]] std::shared_ptr<void> observeDistributed(NSNotificationName name,
                                                       std::function<void()> told);

}  // namespace vorrin
