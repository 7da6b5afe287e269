#pragma once

#import <AppKit/AppKit.h>

#include "platform/window.h"

namespace vorrin {

struct Window::Native {
  NSWindow* window = nil;
};

}  // namespace vorrin
