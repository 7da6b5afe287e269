#include "desktop_test.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "tests/machine/login.h"
#include "tests/x11/harness/wait.h"

namespace vorrin::machine {

using namespace std::chrono_literals;
using x11_tests::waitFor;
using x11_tests::waitUntil;

namespace {

constexpr const char* statusFile = "/home/player/Library/Logs/Vorrin-status.txt";

/// With Backtick and Tab as shortcuts.
void storeSettings(const std::string& keyInterval, const std::string& clickInterval, int digit) {
  const std::filesystem::path folder = "/home/player/.config/vorrin";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "org.vorrin.Vorrin.json")
      << R"({"interval0": )" << keyInterval << R"(, "interval1": )" << clickInterval
      << R"(, "key0": 50, "key1": 48, "enabled0": true, "enabled1": true, "digit": )" << digit
      << "}\n";
  EXPECT_TRUE(succeeds("chown -R player: /home/player/.config"));
}

}  // namespace

std::string status() {
  std::ifstream file(statusFile);
  return {std::istreambuf_iterator<char>(file), {}};
}

std::string keyLine(int key, bool isDown) {
  return "key " + std::to_string(key) + (isDown ? " down" : " up");
}

void WaylandDesktop::useDesktop(Compositor compositor) {
  if (session_ && session_->compositor() == compositor) return;
  endDesktop();
  allow(player);
  keyboard_ = std::make_unique<UhidKeyboard>("Test keyboard");
  session_ = std::make_unique<DesktopSession>(compositor);
  if (compositor == Compositor::sway) client_ = session_->start({CLIENT_PATH});
}

void WaylandDesktop::endDesktop() {
  vorrin_.reset();
  client_.reset();
  session_.reset();
  keyboard_.reset();
}

void WaylandDesktop::TearDown() {
  toggle(KEY_ESC);
  takeLines(500ms);
}

void WaylandDesktop::startVorrin(const std::string& keyInterval, const std::string& clickInterval,
                                 int digit) {
  const auto settings = keyInterval + " " + clickInterval + " " + std::to_string(digit);
  if (!vorrin_ || settings != settings_) {
    vorrin_.reset();
    settings_ = settings;
    std::filesystem::remove(statusFile);
    storeSettings(keyInterval, clickInterval, digit);
    focusClient();
    takeLines(1s);
    vorrin_ = session_->start({VORRIN_PATH});
    ASSERT_TRUE(waitUntil([] { return status() == readyStatus; }, 120s)) << status();
    ASSERT_TRUE(waitUntil([] { return session_->hasInput("Vorrin pointer"); }));
    // A new window has the keyboard.
    readUntil("inactive");
  }
  // A window that is still being shown may take the keyboard once more.
  ASSERT_TRUE(waitUntil([this] {
    focusClient();
    takeLines(1s);
    return !keysComeDirectly();
  }));
}

bool WaylandDesktop::untilKeyboardHeld() {
  return waitUntil([this] { return !keysComeDirectly(); });
}

/// Whether keys do not come through the keyboard's clone yet. F9 is no shortcut here.
bool WaylandDesktop::keysComeDirectly() {
  watch_.look();
  watch_.forget();
  keyboard_->tap(KEY_F9);
  waitUntil(
      [this] {
        watch_.look();
        return watch_.keys().size() >= 2;
      },
      2s);
  const bool direct = std::ranges::any_of(
      watch_.seen(), [](const SeenEvent& event) { return event.place == "test/Test keyboard"; });
  return direct || watch_.keys().empty();
}

void WaylandDesktop::focusClient() {
  if (session_->compositor() == Compositor::sway) {
    waitUntil([] { return session_->tree().find(loggingClient) != std::string::npos; });
    session_->focus(loggingClient);
  } else if (keysComeDirectly()) {
    // A new window is in front, below the pointer when it covers the screen.
    client_ = session_->start({CLIENT_PATH, "--maximized"});
    readUntil("active");
  }
}

void WaylandDesktop::focusVorrin() {
  if (session_->compositor() == Compositor::sway) {
    session_->focus(vorrinWindow);
    readUntil("inactive");
  } else {
    // When a window closes, the one below it is in front.
    client_.reset();
  }
}

std::vector<std::string> WaylandDesktop::takeLines(std::chrono::milliseconds silence) {
  const auto end = std::chrono::steady_clock::now() + x11_tests::patience;
  std::vector<std::string> lines;
  while (const auto line = client_ ? client_->readLine(silence) : std::nullopt) {
    lines.push_back(*line);
    if (std::chrono::steady_clock::now() < end) continue;
    ADD_FAILURE() << "the client goes on receiving";
    break;
  }
  return lines;
}

std::vector<std::string> WaylandDesktop::readUntil(const std::string& wanted, long count) {
  const auto end = std::chrono::steady_clock::now() + x11_tests::patience;
  std::vector<std::string> lines;
  while (std::ranges::count(lines, wanted) < count) {
    const auto line = client_->readLine();
    if (!line || std::chrono::steady_clock::now() >= end) {
      ADD_FAILURE() << "wanted: " << wanted << "; came: " << testing::PrintToString(lines);
      break;
    }
    lines.push_back(*line);
  }
  return lines;
}

bool WaylandDesktop::comes(const std::string& wanted, std::chrono::milliseconds bound) {
  const auto end = std::chrono::steady_clock::now() + bound;
  while (std::chrono::steady_clock::now() < end) {
    if (client_->readLine(100ms) == wanted) return true;
  }
  return false;
}

void WaylandDesktop::toggle(int key) {
  keyboard_->press(key);
  waitFor(30ms);
  keyboard_->release(key);
}

}  // namespace vorrin::machine
