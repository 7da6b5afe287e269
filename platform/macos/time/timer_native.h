#pragma once

#import <Foundation/Foundation.h>

#include <functional>
#include <memory>

#include "platform/timer.h"

namespace vorrin {

/// The NSTimer exists from the moment the timer is added to the run loop until it is invalidated.
/// Its block holds this object, so a scheduled timer lives on when nobody refers to it.
struct Timer::Native {
  double interval = 0;
  std::shared_ptr<const std::function<void()>> block;
  NSTimer* timer = nil;
  /// Keeps the system from slowing the program down while the timer is scheduled.
  std::shared_ptr<void> activity;
};

}  // namespace vorrin
