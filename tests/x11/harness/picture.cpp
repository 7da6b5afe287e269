#include "tests/x11/harness/picture.h"

#include <algorithm>
#include <fstream>
#include <stdexcept>

namespace vorrin::x11_tests {

Picture::Picture(const std::string& file) {
  std::ifstream input(file, std::ios::binary);
  std::string kind;
  int height = 0;
  int brightest = 0;
  input >> kind >> width_ >> height >> brightest;
  input.get();
  if (kind != "P6" || brightest != 255) throw std::runtime_error(file + " is no picture");
  pixels_.resize(static_cast<std::size_t>(width_ * height));
  for (Pixel& pixel : pixels_) input.read(reinterpret_cast<char*>(pixel.data()), 3);
}

Picture::Pixel Picture::at(int x, int y) const {
  return pixels_.at(static_cast<std::size_t>(y * width_ + x));
}

Picture Picture::part(const Box& box) const {
  std::vector<Pixel> pixels;
  for (int y = box.top; y <= box.bottom; ++y) {
    for (int x = box.left; x <= box.right; ++x) pixels.push_back(at(x, y));
  }
  return {box.right - box.left + 1, std::move(pixels)};
}

Box Picture::around(const std::function<bool(int x, int y)>& holds) const {
  Box box;
  for (int place = 0; place < static_cast<int>(pixels_.size()); ++place) {
    const int x = place % width_;
    const int y = place / width_;
    if (!holds(x, y)) continue;
    const bool isFirst = box.right < 0;
    box = {isFirst ? x : std::min(box.left, x), isFirst ? y : box.top, std::max(box.right, x), y};
  }
  return box;
}

Box Picture::aroundDifference(const Picture& other) const {
  return around([&](int x, int y) { return at(x, y) != other.at(x, y); });
}

std::vector<int> Picture::edges(int y, int left, int right) const {
  std::vector<int> columns;
  const Pixel ground = at(left, y);
  for (int x = left + 1; x <= right; ++x) {
    if ((at(x, y) == ground) != (at(x - 1, y) == ground)) columns.push_back(x);
  }
  return columns;
}

}  // namespace vorrin::x11_tests
