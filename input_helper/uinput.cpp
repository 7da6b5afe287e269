#include "input_helper/uinput.h"

#include <fcntl.h>

#include <utility>

namespace vorrin::input_helper {

Uinput::Uinput(std::size_t count) {
  while (free_.size() < count) {
    FileDescriptor opened(::open("/dev/uinput", O_RDWR | O_NONBLOCK | O_CLOEXEC | O_NOFOLLOW));
    if (!opened.isOpen()) return;
    free_.push_back(std::move(opened));
  }
}

FileDescriptor Uinput::take() {
  if (free_.empty()) return {};
  FileDescriptor taken = std::move(free_.back());
  free_.pop_back();
  return taken;
}

void Uinput::giveBack(FileDescriptor descriptor) {
  free_.push_back(std::move(descriptor));
}

}  // namespace vorrin::input_helper
