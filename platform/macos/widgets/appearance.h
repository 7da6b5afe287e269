#pragma once

#import <AppKit/AppKit.h>

#include "platform/color.h"
#include "platform/font.h"

namespace vorrin {

NSColor* nsColor(const Color& color);

/// The colour's components in sRGB; black for nil.
Color colorOf(NSColor* color);

NSFont* nsFont(const Font& font);

}  // namespace vorrin
