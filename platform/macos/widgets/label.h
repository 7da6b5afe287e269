#pragma once

#import <AppKit/AppKit.h>

/// A label that draws a text which needs more lines than it may show without its middle, so that
/// the end is seen. Its text, which screen readers tell, stays whole.
@interface VorrinLabel : NSTextField
@end
