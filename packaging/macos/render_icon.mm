#import <AppKit/AppKit.h>

#include <cstdio>

// Draws an SVG file as a square PNG: SVG SIZE PNG. Built and run while Vorrin.app is built on a
// Mac, which has no such program of its own.

namespace {

NSBitmapImageRep* emptyPicture(NSInteger size) {
  return [[NSBitmapImageRep alloc] initWithBitmapDataPlanes:nullptr
                                                 pixelsWide:size
                                                 pixelsHigh:size
                                              bitsPerSample:8
                                            samplesPerPixel:4
                                                   hasAlpha:YES
                                                   isPlanar:NO
                                             colorSpaceName:NSCalibratedRGBColorSpace
                                                bytesPerRow:0
                                               bitsPerPixel:0];
}

NSData* drawnAsPng(NSImage* drawing, NSInteger size) {
  NSBitmapImageRep* picture = emptyPicture(size);
  NSGraphicsContext.currentContext = [NSGraphicsContext graphicsContextWithBitmapImageRep:picture];
  const auto length = static_cast<CGFloat>(size);
  [drawing drawInRect:NSMakeRect(0, 0, length, length)];
  [NSGraphicsContext.currentContext flushGraphics];
  return [picture representationUsingType:NSBitmapImageFileTypePNG properties:@{}];
}

}  // namespace

int main(int argumentCount, char** arguments) {
  @autoreleasepool {
    if (argumentCount != 4) {
      std::fprintf(stderr, "usage: %s SVG SIZE PNG\n", arguments[0]);
      return 2;
    }
    NSImage* drawing = [[NSImage alloc] initWithContentsOfFile:@(arguments[1])];
    const NSInteger size = @(arguments[2]).integerValue;
    if (drawing == nil || size <= 0 ||
        ![drawnAsPng(drawing, size) writeToFile:@(arguments[3]) atomically:YES]) {
      std::fprintf(stderr, "%s could not be drawn as %s\n", arguments[1], arguments[3]);
      return 1;
    }
  }
  return 0;
}
