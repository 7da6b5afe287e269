#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

/// A new directory that stands in for everything of the user's that the program could write to.
std::filesystem::path makePrivateHome() {
  std::string pattern = (std::filesystem::temp_directory_path() / "vorrin-unit-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) std::abort();
  for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                               "XDG_CACHE_HOME", "XDG_RUNTIME_DIR", "TMPDIR"}) {
    setenv(variable, pattern.c_str(), 1);
  }
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
