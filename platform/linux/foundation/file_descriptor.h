#pragma once

#include <unistd.h>

#include <utility>

namespace vorrin {

/// Owns an open file descriptor and closes it.
class FileDescriptor {
 public:
  FileDescriptor() = default;

  /// Takes ownership of `descriptor`; a negative value stands for none.
  explicit FileDescriptor(int descriptor) : descriptor_(descriptor) {}

  FileDescriptor(FileDescriptor&& other) noexcept
      : descriptor_(std::exchange(other.descriptor_, -1)) {}

  FileDescriptor& operator=(FileDescriptor&& other) noexcept {
    std::swap(descriptor_, other.descriptor_);
    return *this;
  }

  ~FileDescriptor() {
    if (isOpen()) ::close(descriptor_);
  }

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

 private:
  int descriptor_ = -1;
};

}  // namespace vorrin
