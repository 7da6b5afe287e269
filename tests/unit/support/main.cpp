#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/fatal_error.h"
#include "platform/text_file.h"

namespace {

/// A new directory that stands in for everything of the user's that the program could write to.
std::filesystem::path makePrivateHome() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorrin-unit-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  // The second is what Core Foundation goes by.
  for (const char* variable : {"HOME", "CFFIXED_USER_HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME",
                               "XDG_STATE_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    setenv(variable, pattern.c_str(), 1);
  }
  // Tests remove what lies in there.
  vorrin::precondition(std::filesystem::equivalent(vorrin::homeDirectory(), pattern),
                       "the private directory is taken for the home directory");
  return pattern;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  testing::InitGoogleTest(&argumentCount, arguments);
  const auto home = makePrivateHome();
  const int status = RUN_ALL_TESTS();
  std::filesystem::remove_all(home);
  return status;
}
