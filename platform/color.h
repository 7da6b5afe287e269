#pragma once

namespace vorrin {

/// A colour in sRGB with components from 0 to 1.
struct Color {
  double red = 0;
  double green = 0;
  double blue = 0;
  double alpha = 1;

  static constexpr Color sRgb(double red, double green, double blue) {
    return {red, green, blue, 1};
  }
  static constexpr Color gray(double white) { return {white, white, white, 1}; }
  static constexpr Color black() { return gray(0); }
  /// The system's orange for warnings, in its form for dark windows.
  static constexpr Color systemOrange() { return {1.0, 0.624, 0.039, 1}; }

  bool operator==(const Color&) const = default;
};

}  // namespace vorrin
