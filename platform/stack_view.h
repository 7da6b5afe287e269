#pragma once

#include <span>

#include "platform/view.h"

namespace vorrin {

enum class Orientation { horizontal, vertical };

/// A view that places its views one after the other: centred on a line (horizontal), or below each
/// other with their left edges aligned (vertical).
class StackView : public View {
 public:
  StackView() = default;

  /// `spacing` is the room between two views in points. Views keep their own widths; a spacer takes
  /// the rest of a row.
  static StackView make(Orientation orientation, double spacing, std::span<const View> views);

  void addArrangedSubview(const View& view) const;

  /// Room in points between the four edges and the views.
  void setEdgeInsets(double inset) const;

  /// Draws the stack as a plane with round corners and an edge line. Lengths in points.
  void setLayer(const Color& background, double cornerRadius, double borderWidth,
                const Color& border) const;

 private:
  using View::View;
};

}  // namespace vorrin
