// Runs a fuzzing program over the files of folders, once each, where libFuzzer is not linked.
// usage: PROGRAM FOLDER...

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

std::vector<std::uint8_t> bytesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// The number of files tried. The name of each is said first, for a failure ends the process.
int replay(const std::filesystem::path& folder) {
  int count = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::fprintf(stderr, "%s\n", entry.path().c_str());
    const auto bytes = bytesOf(entry.path());
    LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    ++count;
  }
  return count;
}

}  // namespace

int main(int argumentCount, char** arguments) {
  int count = 0;
  for (int number = 1; number < argumentCount; ++number) count += replay(arguments[number]);
  // An empty corpus would pass without having tried anything.
  return count > 0 ? 0 : 1;
}
