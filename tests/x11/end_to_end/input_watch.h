#pragma once

#include <memory>
#include <string>

namespace vorrin::x11_tests {

/// Counts everything that is pressed on any keyboard or pointing device of a server, by a user or
/// by a program, whatever window gets it.
class InputWatch {
 public:
  explicit InputWatch(const std::string& display);
  ~InputWatch();
  InputWatch(const InputWatch&) = delete;
  InputWatch& operator=(const InputWatch&) = delete;

  /// The keys and buttons pressed since the last call.
  int takePresses();

 private:
  struct Native;
  std::unique_ptr<Native> native_;
};

}  // namespace vorrin::x11_tests
