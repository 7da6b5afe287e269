#pragma once

#include <filesystem>

namespace vorrin {

/// A home directory that exists, and is this process's, while the value lives.
class PrivateHome {
 public:
  PrivateHome();
  ~PrivateHome();
  PrivateHome(const PrivateHome&) = delete;
  PrivateHome& operator=(const PrivateHome&) = delete;

  const std::filesystem::path path;
};

}  // namespace vorrin
