#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>
#include <string>

namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

const std::string renameLine =
    "PASS: rename preserves values, rejects collisions/empty names; deletion persists and handles "
    "last "
    "preset.\n";
const std::string persistenceLine =
    "PASS: named preset persistence, all fields round-trip, trimmed names, replacement and "
    "invalid-input rejection.\n";
const std::string engineLineStart =
    "PASS: interval validation, toggle, autorepeat suppression, independent timers, disabled "
    "macro, "
    "Escape stop, no output after stop. Simulated counts: [";
const std::string autoSaveLine =
    "PASS: real auto-save handlers, invalid drafts preserve saved state, collision recovery, "
    "stop-on-edit, preset isolation and persistence.\n";
const std::string layoutLine =
    "PASS: fullscreen capability, black/green theme, compact and expanded layout.\n";

struct Outcome {
  std::string output;  ///< standard output
  std::string errors;  ///< standard error
  int status = -1;     ///< as `wait` gives it

  [[nodiscard]] bool exitedWith(int code) const {
    return WIFEXITED(status) && WEXITSTATUS(status) == code;
  }
};

/// A program started, its standard error going to a file of its own.
class StartedProgram {
 public:
  explicit StartedProgram(const std::string& command)
      // `exec` so that the status is the program's own, its signal included.
      : pipe_(popen(("exec 2>" + errors_.string() + "; exec " + command).c_str(), "r")) {}

  Outcome finish() {
    Outcome outcome;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe_)) {
      outcome.output.append(buffer.data(), count);
    }
    outcome.status = pclose(pipe_);
    std::ostringstream errors;
    errors << std::ifstream(errors_).rdbuf();
    outcome.errors = errors.str();
    fs::remove(errors_);
    return outcome;
  }

 private:
  static fs::path newFile() {
    std::string pattern = (fs::temp_directory_path() / "vorrin-errors-XXXXXX").string();
    close(mkstemp(pattern.data()));
    return pattern;
  }

  fs::path errors_ = newFile();
  FILE* pipe_;
};

Outcome run(const std::string& command) {
  return StartedProgram(command).finish();
}

/// Runs programs in a private directory that is home, configuration and working directory at once.
class SelfChecks : public testing::Test {
 protected:
  SelfChecks() {
    std::string pattern = (fs::temp_directory_path() / "vorrin-self-checks-XXXXXX").string();
    directory_ = mkdtemp(pattern.data());
    fs::permissions(directory_, fs::perms::all);
  }
  ~SelfChecks() override { fs::remove_all(directory_); }

  /// `program` with nothing in its environment but what is named.
  [[nodiscard]] std::string bare(const std::string& program, const std::string& environment) const {
    return "env -i -C " + directory_.string() + " TMPDIR=" + directory_.string() + " " +
           environment + " LSAN_OPTIONS=\"$LSAN_OPTIONS\" timeout 50 " + program;
  }
  [[nodiscard]] std::string inHome(const std::string& program) const {
    return bare(program, "HOME=" + directory_.string());
  }
  [[nodiscard]] std::vector<std::string> filesLeft() const {
    std::vector<std::string> names;
    for (const auto& entry : fs::recursive_directory_iterator(directory_)) {
      if (entry.path().filename() != "ui-preview.png") names.push_back(entry.path().string());
    }
    return names;
  }

  fs::path directory_;
};

void expectLogicPassed(const Outcome& outcome) {
  EXPECT_TRUE(outcome.exitedWith(0)) << outcome.errors;
  const std::string start = renameLine + persistenceLine + engineLineStart;
  ASSERT_EQ(outcome.output.substr(0, start.size()), start);
  EXPECT_THAT(outcome.output.substr(start.size()),
              MatchesRegex("[0-9]+, [0-9]+\\]\\. No physical events emitted\\.\n"));
}

TEST_F(SelfChecks, logic_check_prints_its_three_lines_without_display_or_session_bus) {
  expectLogicPassed(run(inHome(VORRIN_PROGRAM " --self-test")));
}

TEST_F(SelfChecks, logic_check_finds_its_argument_at_any_place) {
  expectLogicPassed(run(inHome(VORRIN_PROGRAM " other --self-test --ui-test")));
}

TEST_F(SelfChecks, logic_check_leaves_nothing_behind) {
  ASSERT_TRUE(run(inHome(VORRIN_PROGRAM " --self-test")).exitedWith(0));
  EXPECT_THAT(filesLeft(), IsEmpty());
}

TEST_F(SelfChecks, logic_check_needs_no_home_that_exists) {
  // Root could make the missing directory, so root changes to a user who cannot.
  const std::string asOrdinaryUser =
      geteuid() == 0 ? "setpriv --reuid 65534 --regid 65534 --clear-groups " : "";
  const std::string program = asOrdinaryUser + VORRIN_PROGRAM " --self-test";
  expectLogicPassed(run(bare(program, "HOME=/nonexistent")));
  EXPECT_THAT(filesLeft(), IsEmpty());
}

TEST_F(SelfChecks, two_logic_checks_at_once_do_not_disturb_each_other) {
  StartedProgram first(inHome(VORRIN_PROGRAM " --self-test"));
  StartedProgram second(inHome(VORRIN_PROGRAM " --self-test"));
  expectLogicPassed(first.finish());
  expectLogicPassed(second.finish());
}

TEST_F(SelfChecks, a_storage_that_forgets_fails_the_logic_check_by_name_and_place) {
  const Outcome outcome = run(inHome(VORRIN_WITH_FORGETFUL_DEFAULTS " --self-test"));
  EXPECT_FALSE(WIFEXITED(outcome.status));
  EXPECT_THAT(outcome.errors, HasSubstr("Assertion failed: a preset is saved: file "));
  EXPECT_THAT(outcome.errors, HasSubstr("logic_self_check.cpp, line "));
  EXPECT_THAT(outcome.output, Not(HasSubstr("PASS")));
}

TEST_F(SelfChecks, interface_check_passes_without_a_display_and_writes_its_picture) {
  const Outcome outcome = run(inHome(VORRIN_PROGRAM " --ui-test"));
  EXPECT_TRUE(outcome.exitedWith(0)) << outcome.errors;
  const std::string start = autoSaveLine + layoutLine + "PASS: native UI contains ";
  ASSERT_EQ(outcome.output.substr(0, start.size()), start);
  EXPECT_THAT(outcome.output.substr(start.size()),
              MatchesRegex("[0-9]+ controls within window bounds; both macros OFF\\.\n"));
  EXPECT_EQ(outcome.errors, "");
  std::ifstream picture(directory_ / "ui-preview.png", std::ios::binary);
  std::string signature(8, '\0');
  picture.read(signature.data(), 8);
  EXPECT_EQ(signature, "\x89PNG\r\n\x1a\n");
}

TEST_F(SelfChecks, interface_check_passes_with_a_display_variable_that_leads_nowhere) {
  const Outcome outcome =
      run(bare(VORRIN_PROGRAM " --ui-test", "DISPLAY=:9999 HOME=" + directory_.string()));
  EXPECT_TRUE(outcome.exitedWith(0)) << outcome.errors;
  EXPECT_EQ(outcome.errors, "");
}

TEST_F(SelfChecks, interface_check_passes_at_each_scale_and_in_each_language) {
  const std::string home = " HOME=" + directory_.string();
  for (const std::string setting :
       {"QT_SCALE_FACTOR=1.25", "QT_SCALE_FACTOR=1.5", "QT_SCALE_FACTOR=2", "LC_ALL=de_DE.UTF-8",
        "LC_ALL=ja_JP.UTF-8", "LC_ALL=ar_EG.UTF-8"}) {
    const Outcome outcome = run(bare(VORRIN_PROGRAM " --ui-test", setting + home));
    EXPECT_TRUE(outcome.exitedWith(0)) << setting << ": " << outcome.errors;
  }
}

TEST_F(SelfChecks, interface_check_passes_twice_and_leaves_no_settings) {
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(run(inHome(VORRIN_PROGRAM " --ui-test")).exitedWith(0));
  }
  for (const std::string& name : filesLeft()) EXPECT_THAT(name, Not(HasSubstr("vorrin-ui-")));
}

TEST_F(SelfChecks, interface_check_writes_no_status_as_it_makes_no_directory) {
  ASSERT_TRUE(run(inHome(VORRIN_PROGRAM " --ui-test")).exitedWith(0));
  EXPECT_FALSE(fs::exists(directory_ / "Library"));
}

TEST_F(SelfChecks, a_storage_that_forgets_fails_the_interface_check_by_name_and_place) {
  const Outcome outcome = run(inHome(VORRIN_WITH_FORGETFUL_DEFAULTS " --ui-test"));
  EXPECT_FALSE(outcome.exitedWith(0));
  EXPECT_THAT(outcome.errors, HasSubstr("Precondition failed: a preset is saved: file "));
  EXPECT_THAT(outcome.output, Not(HasSubstr("PASS")));
}

TEST_F(SelfChecks, a_control_outside_the_window_fails_the_interface_check) {
  const Outcome outcome = run(inHome(VORRIN_WITH_CLIPPED_CONTROL " --ui-test"));
  EXPECT_FALSE(outcome.exitedWith(0));
  EXPECT_THAT(outcome.errors, HasSubstr("Precondition failed: Clipped control: "));
  EXPECT_FALSE(fs::exists(directory_ / "ui-preview.png"));
}

TEST_F(SelfChecks, a_working_directory_that_cannot_be_written_fails_the_interface_check) {
  const Outcome outcome =
      run("env -i -C /proc HOME=" + directory_.string() +
          " LSAN_OPTIONS=\"$LSAN_OPTIONS\" timeout 50 " VORRIN_PROGRAM " --ui-test");
  EXPECT_FALSE(outcome.exitedWith(0));
  EXPECT_THAT(outcome.errors, HasSubstr("ui-preview.png can be written"));
}

TEST_F(SelfChecks, a_normal_start_without_a_display_says_so_and_ends_with_status_1) {
  const Outcome outcome = run(inHome(VORRIN_PROGRAM));
  EXPECT_TRUE(outcome.exitedWith(1)) << outcome.errors;
  EXPECT_THAT(outcome.errors, HasSubstr("no display"));
}

}  // namespace
