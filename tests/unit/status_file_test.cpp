#include "bridge/status_file.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "bridge/keyboard_listener.h"
#include "support/system_test.h"

namespace vorrin {
namespace {

namespace files = std::filesystem;
using namespace std::string_literals;

class StatusFileTest : public test::SystemTest {
 protected:
  StatusFileTest() { files::create_directories(path.parent_path()); }
  ~StatusFileTest() override { files::remove_all(path.parent_path()); }

  void write(const std::string& text) const { std::ofstream(path, std::ios::binary) << text; }

  [[nodiscard]] std::string content() const {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

  const files::path path = statusFilePath();
};

TEST_F(StatusFileTest, tells_trust_and_tap_as_they_are_and_ready_as_given) {
  updateStatusFile(false);
  EXPECT_EQ(content(), "accessibility=true eventTap=false ready=false\n");
  connectKeyboardListener();
  updateStatusFile(true);
  EXPECT_EQ(content(), "accessibility=true eventTap=true ready=true\n");
  fake::system().trusted = false;
  fake::system().promptingQueries = 0;
  updateStatusFile(true);
  EXPECT_EQ(content(), "accessibility=false eventTap=true ready=true\n");
  EXPECT_EQ(fake::system().promptingQueries, 0U);
}

TEST_F(StatusFileTest, a_file_that_is_up_to_date_is_not_written_again) {
  updateStatusFile(false);
  // It looks old, so that a new write shows.
  files::last_write_time(path, files::last_write_time(path) - std::chrono::hours(1));
  const auto before = files::last_write_time(path);
  updateStatusFile(false);
  EXPECT_EQ(files::last_write_time(path), before);
}

TEST_F(StatusFileTest, content_that_differs_in_any_way_is_replaced_and_nothing_left_beside_it) {
  const std::string line = statusLine(true, false, false);
  for (const std::string& other :
       {""s, "old\n"s, line + "\n", line.substr(0, line.size() - 1), "\xEF\xBB\xBF" + line,
        line.substr(0, line.size() - 1) + "\r\n", line + "\0"s, "\xFF\xFE"s, line + "\xC3"}) {
    write(other);
    updateStatusFile(false);
    EXPECT_EQ(content(), line) << testing::PrintToString(other);
  }
  EXPECT_EQ(std::distance(files::directory_iterator(path.parent_path()), {}), 1);
}

TEST_F(StatusFileTest, one_that_cannot_be_written_does_no_harm_and_makes_no_directory) {
  files::create_directories(path / "in the way");
  updateStatusFile(false);
  EXPECT_TRUE(files::is_directory(path));
  files::remove_all(path.parent_path());
  updateStatusFile(false);
  EXPECT_FALSE(files::exists(path.parent_path()));
}

}  // namespace
}  // namespace vorrin
