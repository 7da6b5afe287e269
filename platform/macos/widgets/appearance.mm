#include "platform/macos/widgets/appearance.h"

#include <cmath>

namespace vorrin {

namespace {

// A colour may come back in single precision or by way of another colour space. To six decimals it
// is the number it was made with.
double component(CGFloat value) {
  constexpr double scale = 1e6;
  return std::round(value * scale) / scale;
}

NSFontWeight nsFontWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return NSFontWeightRegular;
    case FontWeight::medium:
      return NSFontWeightMedium;
    case FontWeight::semibold:
      return NSFontWeightSemibold;
  }
}

}  // namespace

NSColor* nsColor(const Color& color) {
  return [NSColor colorWithSRGBRed:color.red green:color.green blue:color.blue alpha:color.alpha];
}

Color colorOf(NSColor* color) {
  NSColor* converted = [color colorUsingColorSpace:NSColorSpace.sRGBColorSpace];
  if (converted == nil) return Color::black();
  return {component(converted.redComponent), component(converted.greenComponent),
          component(converted.blueComponent), component(converted.alphaComponent)};
}

NSFont* nsFont(const Font& font) {
  const NSFontWeight weight = nsFontWeight(font.weight);
  return font.family == FontFamily::system
             ? [NSFont systemFontOfSize:font.size weight:weight]
             : [NSFont monospacedSystemFontOfSize:font.size weight:weight];
}

}  // namespace vorrin
