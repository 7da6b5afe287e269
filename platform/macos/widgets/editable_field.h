#pragma once

#import <AppKit/AppKit.h>

/// A field in which the usual keys cut, copy, paste, select all, undo and redo. Those are the keys
/// of an Edit menu otherwise, which the program does not have. With a bezel it draws its background
/// as a plane in that shape.
@interface VorrinEditableField : NSTextField
@end
