#include "private_home.h"

#include <stdlib.h>
#include <unistd.h>

#include <cstdlib>
#include <string>

#include "platform/fatal_error.h"
#include "platform/text_file.h"

namespace vorrin {

namespace {

std::filesystem::path newDirectory() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorrin-home-XXXXXX").string();
  precondition(mkdtemp(pattern.data()) != nullptr, "a temporary directory can be made");
  return pattern;
}

}  // namespace

PrivateHome::PrivateHome() : path(newDirectory()) {
  setenv("HOME", path.c_str(), 1);
  setenv("CFFIXED_USER_HOME", path.c_str(), 1);  // what Core Foundation goes by
  setenv("XDG_CONFIG_HOME", (path / ".config").c_str(), 1);
  precondition(std::filesystem::equivalent(homeDirectory(), path),
               "the private directory is taken for the home directory");
}

PrivateHome::~PrivateHome() {
  std::error_code ignored;
  std::filesystem::remove_all(path, ignored);
}

}  // namespace vorrin
