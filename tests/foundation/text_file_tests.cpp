#include "platform/text_file.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>

namespace vorrin {
namespace {

using namespace std::string_literals;

class TextFile : public testing::Test {
 protected:
  TextFile() {
    std::filesystem::remove_all(directory);
    std::filesystem::create_directory(directory);
  }
  ~TextFile() override { std::filesystem::remove_all(directory); }

  void fill(const std::string& content) const { std::ofstream(file, std::ios::binary) << content; }

  [[nodiscard]] std::ptrdiff_t filesInDirectory() const {
    return std::distance(std::filesystem::directory_iterator(directory), {});
  }

  const std::filesystem::path directory =
      std::filesystem::path(testing::TempDir()) / "vorrin text file ☕";
  const std::filesystem::path file = directory / "text";
};

TEST_F(TextFile, is_read_as_it_was_written) {
  for (const std::string& text : {""s, "one line\n"s, "naïve \0 ☕\r\n"s, "\uFEFF"s,
                                  "\uFEFFwith a mark\n"s, std::string(100'000, 'x')}) {
    ASSERT_TRUE(writeTextFileAtomically(file, text));
    EXPECT_EQ(readTextFile(file), text);
    EXPECT_EQ(std::filesystem::file_size(file), text.size());
  }
  EXPECT_EQ(filesInDirectory(), 1);
}

TEST_F(TextFile, gives_nothing_when_it_is_not_utf8) {
  for (const char* content : {"\xFF", "a\xC3", "\xED\xA0\x80", "\xC0\x80", "\xF5\x80\x80\x80"}) {
    fill(content);
    EXPECT_FALSE(readTextFile(file));
  }
}

}  // namespace
}  // namespace vorrin
