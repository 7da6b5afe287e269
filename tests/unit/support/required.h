#pragma once

#include <optional>
#include <stdexcept>
#include <utility>

namespace vorrin::test {

/// What `value` holds; a value that is missing fails the case.
template <class T>
T required(std::optional<T> value) {
  if (!value) throw std::logic_error("a value that the case needs is missing");
  return *std::move(value);
}

}  // namespace vorrin::test
