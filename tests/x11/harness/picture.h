#pragma once

#include <array>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace vorrin::x11_tests {

/// A rectangle of pixels; the last column and row belong to it.
struct Box {
  int left = 0, top = 0, right = -1, bottom = -1;
};

/// The pixels of a screen.
class Picture {
 public:
  using Pixel = std::array<unsigned char, 3>;  ///< red, green, blue

  /// The pixels row by row.
  Picture(int width, std::vector<Pixel> pixels) : width_(width), pixels_(std::move(pixels)) {}
  /// Reads a file of the portable pixmap format.
  explicit Picture(const std::string& file);

  [[nodiscard]] Pixel at(int x, int y) const;
  [[nodiscard]] Picture part(const Box& box) const;
  /// The smallest box with all pixels for which this holds; an empty one when there is none.
  [[nodiscard]] Box around(const std::function<bool(int x, int y)>& holds) const;
  [[nodiscard]] Box aroundDifference(const Picture& other) const;
  /// The columns between `left` and `right` at which a row changes between its first colour and any
  /// other: where what stands in the row begins and ends.
  [[nodiscard]] std::vector<int> edges(int y, int left, int right) const;

  bool operator==(const Picture&) const = default;

 private:
  int width_ = 0;
  std::vector<Pixel> pixels_;
};

}  // namespace vorrin::x11_tests
