#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "platform/view.h"

namespace vorrin {

struct View::Native {
  NSView* view = nil;
};

/// A new reference to `view` for a value of the seam.
std::shared_ptr<View::Native> nativeOf(NSView* view);

/// `view` as a value of the seam.
View viewOf(NSView* view);

/// The native object of a value that refers to one.
NSView* nsView(const View& view);

/// The same, of a kind that the caller knows it to be.
template <typename Kind>
Kind* nsViewAs(const View& view) {
  return static_cast<Kind*>(nsView(view));
}

}  // namespace vorrin
