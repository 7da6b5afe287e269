#pragma once

namespace vorrin {

enum class FontWeight { regular, medium, semibold };
enum class FontFamily { system, monospacedSystem };

/// A font of the system. `size` is in points, which are device-independent pixels.
struct Font {
  double size = 12;
  FontWeight weight = FontWeight::regular;
  FontFamily family = FontFamily::monospacedSystem;
};

}  // namespace vorrin
