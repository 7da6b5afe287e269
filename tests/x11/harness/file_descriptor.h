#pragma once

#include <unistd.h>

#include <utility>

namespace vorrin::x11_tests {

/// Owns a file descriptor and closes it.
class FileDescriptor {
 public:
  FileDescriptor() = default;
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() { reset(); }
  FileDescriptor(FileDescriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    reset();
    number_ = std::exchange(other.number_, -1);
    return *this;
  }

  [[nodiscard]] int number() const { return number_; }
  void reset() {
    if (number_ >= 0) ::close(std::exchange(number_, -1));
  }

 private:
  int number_ = -1;
};

}  // namespace vorrin::x11_tests
