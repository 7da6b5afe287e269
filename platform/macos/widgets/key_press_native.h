#pragma once

#import <AppKit/AppKit.h>

#include "platform/macos/widgets/key_press.h"

namespace vorrin {

KeyPress keyPressOf(NSEvent* event);

}  // namespace vorrin
