// The permission asked for in the system's password dialogue, as a desktop shows it: what the user
// reads there, and what comes of each answer.

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "input_helper/protocol/file_descriptor.h"
#include "permission_fixture.h"

namespace vorrin::machine {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using x11_tests::waitUntil;

/// Long enough for the permission watch to have looked several times.
constexpr auto someLooks = 4s;

/// The administrator whom `tests/machine/permission` makes, and the word that is right.
constexpr const char* administrator = "administrator 4300";
constexpr const char* rightPassword = "password correct horse";
constexpr const char* wrongPassword = "password incorrect horse";
constexpr const char* cancel = "cancel";

constexpr const char* helperAsked =
    "asked org.vorrin.input-helper Vorrin wants to hear its shortcut keys, and to press digits and "
    "click for you. Its helper reads the keyboards for that; no key beside the shortcuts and "
    "Escape leaves it.";
constexpr const char* permissionAsked =
    "asked org.vorrin.input-permission Vorrin wants to change, for you alone, whether it is asked "
    "about its shortcut keys and clicks at every start.";

constexpr const char* rule = "/etc/polkit-1/rules.d/60-vorrin-4242.rules";

class PasswordDialogue : public VorrinWindow {
 protected:
  static inline const Login atDesktop{.hasDialogue = true};

  /// What the dialogue showed since the session began.
  static std::vector<std::string> shown(const Login& login = atDesktop) {
    std::vector<std::string> lines;
    std::ifstream file(login.dialogues());
    for (std::string line; std::getline(file, line);) lines.push_back(line);
    return lines;
  }

  static bool untilShown(const std::vector<std::string>& lines, const Login& login = atDesktop) {
    return waitUntil([&] { return shown(login) == lines; }, 60s);
  }

  static void answer(const std::string& line, const Login& login = atDesktop) {
    const helper_protocol::FileDescriptor pipe(
        ::open(login.answers().c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC));
    const auto whole = line + "\n";
    ASSERT_EQ(::write(pipe.number(), whole.data(), whole.size()), std::ssize(whole));
  }

  void startAsked() {
    startVorrin(atDesktop);
    ASSERT_TRUE(untilShown({helperAsked, administrator})) << testing::PrintToString(shown());
  }

  /// Nothing comes up by itself, and the window goes on saying that the permission is missing.
  static void expectRefusedFrom(const std::vector<std::string>& lines) {
    EXPECT_FALSE(
        waitUntil([&] { return shown() != lines || status() != refusedStatus; }, someLooks))
        << testing::PrintToString(shown()) << status();
  }
};

TEST_F(PasswordDialogue, comes_again_after_a_no_at_the_user_s_wish_only) {
  startAsked();
  // There is one at a time.
  click("Retry connection");
  expectRefusedFrom({helperAsked, administrator});
  answer(cancel);
  std::vector<std::string> lines{helperAsked, administrator, "cancelled"};
  ASSERT_TRUE(untilShown(lines));
  EXPECT_TRUE(waitUntil([this] { return refusals() == 1; }));
  expectRefusedFrom(lines);

  click("Retry connection");
  lines.insert(lines.end(), {helperAsked, administrator});
  ASSERT_TRUE(untilShown(lines)) << testing::PrintToString(shown());
  answer(wrongPassword);
  lines.emplace_back("wrong");
  ASSERT_TRUE(untilShown(lines)) << testing::PrintToString(shown());
  EXPECT_TRUE(waitUntil([this] { return refusals() == 2; }));
  expectRefusedFrom(lines);

  click("Retry connection");
  lines.insert(lines.end(), {helperAsked, administrator});
  ASSERT_TRUE(untilShown(lines)) << testing::PrintToString(shown());
  answer(rightPassword);
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_TRUE(waitUntil([] { return status() == readyStatus; })) << status();
}

TEST_F(PasswordDialogue, shows_vorrin_s_words_once_for_each_vorrin) {
  startAsked();
  EXPECT_EQ(status(), refusedStatus);
  answer(rightPassword);
  ASSERT_TRUE(readUpTo(connectedText));
  EXPECT_TRUE(waitUntil([] { return status() == readyStatus; })) << status();
  // A helper that is lost is replaced without a question for some minutes.
  ASSERT_TRUE(succeeds("pkill -KILL -u player -f [v]orrin-input-helper"));
  ASSERT_TRUE(readUpTo(permissionText));
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_THAT(shown(), ElementsAre(helperAsked, administrator, "accepted"));
  EXPECT_FALSE(std::filesystem::exists(rule));
  end();
  startAsked();
}

TEST_F(PasswordDialogue, allowing_for_good_asks_once_and_holds_for_that_user_alone) {
  startAsked();
  answer(cancel);
  std::vector<std::string> lines{helperAsked, administrator, "cancelled"};
  ASSERT_TRUE(untilShown(lines));

  click("Open Accessibility Settings");
  click("Allow for Good");
  lines.insert(lines.end(), {permissionAsked, administrator});
  ASSERT_TRUE(untilShown(lines)) << testing::PrintToString(shown());
  answer(wrongPassword);
  lines.emplace_back("wrong");
  ASSERT_TRUE(untilShown(lines));
  expectRefusedFrom(lines);
  EXPECT_FALSE(std::filesystem::exists(rule));

  click("Open Accessibility Settings");
  click("Allow for Good");
  lines.insert(lines.end(), {permissionAsked, administrator});
  ASSERT_TRUE(untilShown(lines));
  answer(rightPassword);
  lines.emplace_back("accepted");
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_EQ(shown(), lines);

  // The next one is connected at once.
  end();
  start(WINDOW_TEXTS_PATH, atDesktop);
  EXPECT_TRUE(readUpTo(connectedText));
  EXPECT_THAT(shown(), IsEmpty());
  end();

  // Another user at this machine is asked as ever.
  const Login visitor{.user = "visitor", .console = 2, .hasDialogue = true};
  ASSERT_TRUE(succeeds("busybox chvt 2"));
  startTapProgram(visitor);
  EXPECT_TRUE(untilShown({helperAsked, administrator}, visitor))
      << testing::PrintToString(shown(visitor));
  EXPECT_FALSE(command("trusted"));
  ASSERT_TRUE(succeeds("busybox chvt 1"));
}

TEST_F(PasswordDialogue, taking_back_lets_go_at_once_and_ends_all_questions) {
  changePermission("allow");
  start(WINDOW_TEXTS_PATH, atDesktop);
  ASSERT_TRUE(readUpTo(connectedText));
  click("Open Accessibility Settings");
  click("Take Back");
  EXPECT_TRUE(readUpTo(permissionText));
  ASSERT_TRUE(untilShown({permissionAsked, administrator}));
  answer(rightPassword);
  const std::vector<std::string> lines{permissionAsked, administrator, "accepted"};
  ASSERT_TRUE(untilShown(lines));
  // Polkit has to hear of its new rule first.
  EXPECT_TRUE(waitUntil(
      [this] {
        click("Retry connection");
        return waitUntil([this] { return refusals() > 0; }, someLooks);
      },
      60s));
  expectRefusedFrom(lines);
}

}  // namespace
}  // namespace vorrin::machine
