#include <gmock/gmock.h>
#include <linux/input-event-codes.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "filter_test.h"

namespace vorrin::machine {
namespace {

using namespace helper_protocol;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

TEST_F(MachineFilter, words_without_meaning_end_the_helper_and_free_the_keyboards) {
  const auto whole = encode(ToHelper(Configure{true, 1, {KEY_TAB}}));
  const std::string configure(reinterpret_cast<const char*>(whole.bytes.data()), whole.size);
  const std::string bad[] = {"x", std::string(60'000, 'x'), configure.substr(0, 7),
                             configure + "more", std::string("\x02\0\xFF\xFF\1\1\x0F\0", 8)};
  for (const auto& words : bad) {
    SCOPED_TRACE(words.size());
    startAndGrab();
    helper->sayBytes(words);
    EXPECT_TRUE(untilHelperEnded());
    EXPECT_EQ(helper->status(), 3);
    EXPECT_THAT(helper->log(), HasSubstr("no meaning"));
    expectKeyboardGivenBack();
  }
}

TEST_F(StartedHelper, a_second_hello_ends_the_helper) {
  helper->say(Hello{});
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_EQ(helper->status(), 3);
}

TEST_F(MachineFilter, a_message_before_the_hello_ends_the_helper) {
  helper = std::make_unique<HelperProcess>(false);
  helper->configure({KEY_TAB});
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_EQ(helper->status(), 3);
}

TEST_F(GrabbedKeyboard, an_answer_to_no_question_ends_the_helper) {
  helper->say(Verdict{99, true});
  EXPECT_TRUE(untilHelperEnded());
  expectKeyboardGivenBack();
}

TEST_F(MachineFilter, a_main_program_of_another_version_is_told_so_and_left) {
  helper = std::make_unique<HelperProcess>(false);
  helper->say(Hello{version + 1});
  EXPECT_TRUE(untilHelperEnded());
  helper->listen();
  EXPECT_THAT(helper->said(), ElementsAre(FromHelper(Hello{})));
  EXPECT_THAT(helper->log(), HasSubstr("another version"));
}

TEST_F(GrabbedKeyboard, a_second_program_on_the_connection_ends_the_helper) {
  helper->sayAsAnotherProgram(Configure{true, 1, {KEY_TAB}});
  EXPECT_TRUE(untilHelperEnded());
  EXPECT_THAT(helper->log(), HasSubstr("another program"));
  expectKeyboardGivenBack();
}

TEST_F(StartedHelper, nothing_of_its_starter_remains_with_it) {
  for (const auto process : {helper->privilegedPart(), helper->workingPart()}) {
    const std::filesystem::path place = "/proc/" + std::to_string(process);
    EXPECT_EQ(std::filesystem::read_symlink(place / "cwd"), "/");
    std::vector<std::string> files;
    for (const auto& file : std::filesystem::directory_iterator(place / "fd")) {
      files.push_back(std::filesystem::read_symlink(file).string());
    }
    EXPECT_THAT(files, Each(Not(helper->leftOpen())));
  }
}

TEST_F(StartedHelper, of_root_s_rights_those_to_open_devices_and_to_end_its_part_remain) {
  const auto rights = [](pid_t process) {
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("CapEff:")) return std::stoul(line.substr(7), nullptr, 16);
    }
    return ~0UL;
  };
  constexpr unsigned long dacOverrideAndKill = 1UL << 1 | 1UL << 5;
  EXPECT_EQ(rights(helper->privilegedPart()), dacOverrideAndKill);
  EXPECT_EQ(rights(helper->workingPart()), 0U);
}

TEST_F(MachineFilter, without_a_connection_nothing_is_served) {
  EXPECT_NE(std::system(HELPER_PATH " </dev/null 2>/tmp/log"), 0);
  std::ifstream log("/tmp/log");
  std::string line;
  std::getline(log, line);
  EXPECT_THAT(line, HasSubstr("started by Vorrin only"));
}

}  // namespace
}  // namespace vorrin::machine
