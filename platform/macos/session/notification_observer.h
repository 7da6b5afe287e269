#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <memory>

namespace vorrin {

/// Calls `told` for every notification of this name, from any object, before its sender goes on;
/// AppKit sends on the main thread. Ends when the last copy of the value returned goes away.
[[nodiscard]] std::shared_ptr<void> observe(NSNotificationCenter* center, NSNotificationName name,
                                            std::function<void()> told);

}  // namespace vorrin
