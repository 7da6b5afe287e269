#pragma once

#include <array>
#include <utility>

#include "platform/fatal_error.h"

namespace vorrin {

/// One value for each of the two macros: index 0 is the keyboard-repeat macro, index 1 the
/// left-mouse-click macro. Any other index ends the process.
template <class T>
class PerMacro {
 public:
  PerMacro() = default;
  PerMacro(T keyboardRepeat, T leftMouseClick)
      : values_{std::move(keyboardRepeat), std::move(leftMouseClick)} {}

  T& operator[](int macro) { return values_[checked(macro)]; }
  const T& operator[](int macro) const { return values_[checked(macro)]; }

  auto begin() { return values_.begin(); }
  auto end() { return values_.end(); }
  auto begin() const { return values_.begin(); }
  auto end() const { return values_.end(); }

  bool operator==(const PerMacro&) const = default;

 private:
  static std::size_t checked(int macro) {
    if (macro != 0 && macro != 1) fatalError("Index out of range");
    return static_cast<std::size_t>(macro);
  }

  std::array<T, 2> values_{};
};

}  // namespace vorrin
