#include "permission_fixture.h"

#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace vorrin::machine {

using namespace std::chrono_literals;
using x11_tests::waitUntil;

namespace {

constexpr const char* statusFile = "/home/player/Library/Logs/Vorrin-status.txt";

/// Opening a session takes long in the test machine.
constexpr auto sessionPatience = 60s;

std::vector<std::string> inSession(const std::string& command, const Login& login) {
  const auto console = std::to_string(login.console);
  std::vector<std::string> words = {"systemd-run", "--quiet",   "--pipe",
                                    "--wait",      "--collect", "--unit=" + login.unit()};
  for (const auto& property :
       {"User=" + login.user, "TTYPath=/dev/tty" + console, std::string("PAMName=login"),
        std::string("KillMode=control-group"),
        "Environment=XDG_SEAT=seat0 XDG_SESSION_TYPE=tty VORRIN_INPUT=helper "
        "QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 XDG_VTNR=" +
            console}) {
    words.insert(words.end(), {"-p", property});
  }
  const auto dialogue =
      login.hasDialogue ? AGENT_PATH " " + login.dialogues() + " " + login.answers() + " " : "";
  words.insert(words.end(), {"sh", "-c", "exec " + dialogue + command + " 2>" + login.log()});
  return words;
}

}  // namespace

bool succeeds(const std::string& command) {
  return std::system(command.c_str()) == 0;
}

Permission::Permission() : keyboard_("Test keyboard") {
  waitUntil([this] {
    watch_.look();
    return watch_.has("test/Test keyboard");
  });
}

Permission::~Permission() {
  end();
  changePermission("ask");
}

void Permission::start(const std::string& command, const Login& login) {
  login_ = login;
  std::filesystem::remove(login.dialogues());
  if (login.hasDialogue && !std::filesystem::exists(login.answers())) {
    ASSERT_EQ(::mkfifo(login.answers().c_str(), 0600), 0);
    ASSERT_TRUE(succeeds("chown " + login.user + " " + login.answers()));
  }
  program_.emplace(inSession(command, login));
}

void Permission::end() {
  program_.reset();
  succeeds("systemctl stop " + login_.unit() + " 2>/dev/null");
}

void Permission::startTapProgram(const Login& login) {
  start(TAP_PROGRAM_PATH, login);
  EXPECT_FALSE(command("ask"));
}

void Permission::startTrusted() {
  changePermission("allow");
  startTapProgram();
  ASSERT_TRUE(untilTrusted(true, sessionPatience)) << said();
  ASSERT_TRUE(waitUntil([this] { return command("create 48"); })) << said();
  ASSERT_TRUE(waitUntil([this] { return !keyboardIsFree(); }));
}

bool Permission::command(const std::string& line) {
  program_->writeLine(line);
  const auto name = line.substr(0, line.find(' '));
  while (const auto answer = program_->readLine(sessionPatience)) {
    if (*answer == name + " yes") return true;
    if (*answer == name + " no") return false;
  }
  ADD_FAILURE() << "no answer to " << line;
  return false;
}

bool Permission::untilTrusted(bool trusted, std::chrono::milliseconds bound) {
  return waitUntil([&] { return command("trusted") == trusted; }, bound);
}

bool Permission::keyboardIsFree() {
  watch_.look();
  return watch_.isFree("test/Test keyboard", "Test keyboard");
}

void Permission::changePermission(const std::string& term) {
  ASSERT_TRUE(succeeds("PKEXEC_UID=4242 " PERMISSION_PATH " " + term));
}

std::string Permission::said() const {
  std::ifstream file(login_.log());
  return {std::istreambuf_iterator<char>(file), {}};
}

long Permission::refusals() const {
  std::istringstream file(said());
  long count = 0;
  for (std::string line; std::getline(file, line);) {
    if (line == "vorrin: the permission was not given") ++count;
  }
  return count;
}

std::string Permission::status() {
  std::ifstream file(statusFile);
  return {std::istreambuf_iterator<char>(file), {}};
}

void VorrinWindow::startVorrin(const Login& login) {
  std::filesystem::remove(statusFile);
  start(WINDOW_TEXTS_PATH, login);
  ASSERT_TRUE(readUpTo(permissionText));
  ASSERT_TRUE(waitUntil([] { return status() == refusedStatus; })) << status();
}

bool VorrinWindow::readUpTo(const std::string& text) {
  while (const auto line = program_->readLine(sessionPatience)) {
    if (*line == text) return true;
  }
  return false;
}

}  // namespace vorrin::machine
