#include "platform/macos/foundation/empty_domains.h"

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

namespace vorrin {
namespace {

class EmptyDomains : public testing::Test {
 protected:
  EmptyDomains() {
    std::filesystem::remove_all(folder);
    std::filesystem::create_directory(folder);
  }
  ~EmptyDomains() override { std::filesystem::remove_all(folder); }

  void add(const std::string& name, const std::string& content) const {
    std::ofstream(folder / name, std::ios::binary) << content;
  }

  [[nodiscard]] std::vector<std::string> left() const {
    removeEmptyDomains(folder, "vorrin-");
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      names.push_back(entry.path().filename());
    }
    return names;
  }

  const std::string emptyList = std::string("bplist00\xD0\x08\0\0\0\0\0\0\1\1", 18);
  const std::string emptyText =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\">\n<dict/>\n</plist>\n";
  const std::filesystem::path folder =
      std::filesystem::path(testing::TempDir()) / "vorrin empty domains";
};

TEST_F(EmptyDomains, of_the_program_are_removed_in_both_forms_whenever_they_were_written) {
  add("vorrin-test-1.plist", emptyList);
  add("vorrin-ui-2.plist", emptyText);
  EXPECT_TRUE(left().empty());
  add("vorrin-test-1.plist", emptyList);
  EXPECT_TRUE(left().empty());
}

TEST_F(EmptyDomains, of_others_and_those_that_hold_values_are_left) {
  add("org.vorrin.Vorrin.plist", emptyList);
  add("vorrin-test-1.plist", std::string("bplist00\xD1\x01\x02Skey\x09", 16));
  add("vorrin-test-2.plist", "<plist version=\"1.0\"><dict><key>a</key><dict/></dict></plist>");
  add("vorrin-test-3.plist", "");
  add("vorrin-notes.txt", emptyText);
  EXPECT_EQ(left().size(), 5U);
}

TEST_F(EmptyDomains, are_looked_for_in_vain_where_there_is_no_folder) {
  std::filesystem::remove_all(folder);
  removeEmptyDomains(folder, "vorrin-");
}

}  // namespace
}  // namespace vorrin
