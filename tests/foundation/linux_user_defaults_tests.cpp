#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "platform/user_defaults.h"
#include "tests/foundation/defaults_sandbox.h"

namespace vorrin {
namespace {

using namespace std::string_literals;

class LinuxUserDefaults : public DefaultsSandbox {
 protected:
  /// Has another program write the file.
  void write(const std::string& content) const {
    std::filesystem::create_directories(settings);
    fill(standardFile(), content);
  }
};

TEST_F(LinuxUserDefaults, is_a_text_that_a_user_can_read) {
  using Entry = std::pair<std::string, DefaultsObject>;
  const std::vector<Entry> values = {
      {"interval0", 0.05},        {"interval1", 2.0},
      {"digit", std::int64_t{1}}, {"enabled0", true},
      {"text", "0.05 ☕"s},        {"namedPresets", Data{"{\"Work\":{\"digit\":4}}"}},
      {"bytes", Data{"\xFF"}}};
  ASSERT_FALSE(UserDefaults::standard().set(values));
  EXPECT_EQ(contentOf(standardFile()), R"({
  "bytes": {"base64": "/w=="},
  "digit": 1,
  "enabled0": true,
  "interval0": 0.05,
  "interval1": 2.0,
  "namedPresets": {"json": {
    "Work":{"digit":4}
  }},
  "text": "0.05 ☕"
}
)");
}

TEST_F(LinuxUserDefaults, reads_what_a_user_has_written) {
  write("\uFEFF {\"interval0\": 2e-1, \"digit\": 7,\n\"namedPresets\": {\"json\": { \"a\" : 1 }}}");
  EXPECT_EQ(stored("interval0").value, DefaultsObject(0.2));
  EXPECT_EQ(stored("digit").value, DefaultsObject(std::int64_t{7}));
  EXPECT_EQ(stored("namedPresets").value, DefaultsObject(Data{"{\"a\":1}"}));
}

TEST_F(LinuxUserDefaults, keeps_what_it_does_not_know) {
  write(
      R"({"list": [1, null, {"a": 1e300}], "later": {"base64": 1}, "huge": 18446744073709551615})");
  for (const char* key : {"list", "later", "huge"}) {
    EXPECT_FALSE(stored(key).value) << key;
    EXPECT_FALSE(stored(key).failure) << key;
  }
  ASSERT_FALSE(store("key", true));
  const auto content = contentOf(standardFile());
  for (const char* part : {"null", "1e300", "\"base64\": 1", "18446744073709551615"}) {
    EXPECT_NE(content.find(part), content.npos) << part;
  }
}

TEST_F(LinuxUserDefaults, takes_an_empty_file_for_a_new_domain) {
  for (const char* content : {"", "\n", " \t\r\n"}) {
    write(content);
    EXPECT_FALSE(stored("key").failure);
    EXPECT_FALSE(store("key", true));
    EXPECT_EQ(namesIn(settings).size(), 1u);
  }
}

TEST_F(LinuxUserDefaults,
       lies_in_the_settings_folder_with_nothing_beside_it_once_it_holds_a_value) {
  EXPECT_FALSE(stored("key").value);
  EXPECT_EQ(namesIn(home), std::vector<std::string>{});
  EXPECT_FALSE(store("key", true));
  EXPECT_EQ(namesIn(home), std::vector<std::string>{".config"});
  EXPECT_EQ(namesIn(settings), std::vector<std::string>{"org.vorrin.Vorrin.json"});
}

TEST_F(LinuxUserDefaults, lies_where_the_environment_says) {
  ::setenv("XDG_CONFIG_HOME", (root / "a" / "b").c_str(), 1);
  EXPECT_FALSE(store("key", true));
  EXPECT_TRUE(std::filesystem::exists(root / "a" / "b" / "vorrin" / "org.vorrin.Vorrin.json"));
  for (const char* directory : {"", "relative/path", "."}) {
    ::setenv("XDG_CONFIG_HOME", directory, 1);
    EXPECT_FALSE(store("key", true));
    EXPECT_TRUE(std::filesystem::remove(standardFile())) << directory;
  }
}

TEST_F(LinuxUserDefaults, is_closed_to_other_users_whatever_the_mask) {
  const auto permissionsOf = [](const std::filesystem::path& file) {
    return static_cast<unsigned>(std::filesystem::status(file).permissions());
  };
  const mode_t before = ::umask(0);
  EXPECT_FALSE(store("key", true));
  EXPECT_EQ(permissionsOf(home / ".config"), 0700u);
  EXPECT_EQ(permissionsOf(settings), 0700u);
  EXPECT_EQ(permissionsOf(standardFile()), 0600u);
  ::chmod(standardFile().c_str(), 0644);
  EXPECT_FALSE(store("key", false));
  ::umask(before);
  EXPECT_EQ(permissionsOf(standardFile()), 0600u);
}

TEST_F(LinuxUserDefaults, is_kept_where_a_link_leads) {
  std::filesystem::create_directories(settings);
  std::filesystem::create_directory(root / "elsewhere");
  fill(root / "elsewhere" / "file", "{}");
  std::filesystem::create_symlink(root / "elsewhere" / "file", standardFile());
  EXPECT_FALSE(store("key", true));
  EXPECT_TRUE(std::filesystem::is_symlink(standardFile()));
  EXPECT_NE(contentOf(root / "elsewhere" / "file").find("key"), std::string::npos);
  EXPECT_EQ(namesIn(root / "elsewhere").size(), 1u);
}

TEST_F(LinuxUserDefaults, follows_the_file_when_it_is_replaced_or_removed) {
  const auto defaults = UserDefaults::standard();
  EXPECT_FALSE(store("key", std::int64_t{1}));
  write("{\"key\": 2}");
  EXPECT_EQ(defaults.object("key").value, DefaultsObject(std::int64_t{2}));
  std::filesystem::remove(standardFile());
  EXPECT_FALSE(defaults.object("key").value);
  std::filesystem::remove_all(home / ".config");
  EXPECT_FALSE(store("key", std::int64_t{3}));
  EXPECT_EQ(defaults.object("key").value, DefaultsObject(std::int64_t{3}));
}

}  // namespace
}  // namespace vorrin
