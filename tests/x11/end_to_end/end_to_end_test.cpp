#include "end_to_end_test.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>

#include "input_watch.h"
#include "platform/user_defaults.h"
#include "settings/settings_persistence.h"

namespace vorrin::x11_tests {

namespace {

// Ten times a macro's interval here.
constexpr std::chrono::milliseconds silence{100};

}  // namespace

EndToEndTest::EndToEndTest(Desktop& place) : desktop(place) {
  for (const auto& [name, value] : home.environment()) ::setenv(name.c_str(), value.c_str(), 1);
}

void EndToEndTest::start() {
  EXPECT_FALSE(storeCurrentSettings(UserDefaults::standard(), settings));
  startProgram();
  client = std::make_unique<Client>(desktop.display());
  user.pointAt(client->window());
  waitUntilListening();
}

void EndToEndTest::startProgram() {
  program.reset();
  // The window of one that was killed stays in the list for a moment.
  ASSERT_TRUE(waitUntil([&] { return !windows.titled("Vorrin"); }));
  program = std::make_unique<Program>(desktop.display(), home);
  ASSERT_TRUE(waitUntil([&] { return windows.titled("Vorrin").has_value(); }));
  // Its window comes to the front at some moment from now. Only then can another one follow it.
  showVorrin();
}

void EndToEndTest::kill() {
  program->process().signal(SIGKILL);
  ASSERT_TRUE(program->process().waitForEnd());
  ASSERT_TRUE(waitUntil([&] { return !windows.titled("Vorrin"); }));
  // Its keys hang on another connection than its window.
  for (const std::uint16_t key : stored().keys) ASSERT_TRUE(probe.waitUntilFree(key));
}

unsigned long EndToEndTest::vorrinWindow() {
  return windows.titled("Vorrin").value();
}

void EndToEndTest::showVorrin() {
  user.pointAtCorner(vorrinWindow());
  ASSERT_TRUE(windows.activate(vorrinWindow()));
  for (const std::uint16_t key : stored().keys) ASSERT_TRUE(probe.waitUntilFree(key));
}

void EndToEndTest::showClient() {
  user.pointAt(client->window());
  ASSERT_TRUE(windows.activate(client->window()));
  waitUntilListening();
}

void EndToEndTest::waitUntilListening() {
  const Preset now = stored();
  for (std::size_t macro = 0; macro < now.keys.size(); ++macro) {
    ASSERT_TRUE(!now.enabled[macro] || probe.waitUntilHeld(now.keys[macro]));
  }
}

Preset EndToEndTest::stored() {
  return loadCurrentSettings(UserDefaults::standard()).value;
}

unsigned EndToEndTest::digitKey() const {
  return keycodeOf(keys::digits[static_cast<std::size_t>(settings.digit)]);
}

void EndToEndTest::startMacros() {
  for (const std::uint16_t key : settings.keys) user.tap(key);
  expectActions(keyboardMacro);
  expectActions(mouseMacro);
}

void EndToEndTest::expectNothingPressed(std::chrono::milliseconds duration) {
  InputWatch watch(desktop.display());
  waitFor(duration);
  EXPECT_EQ(watch.takePresses(), 0);
}

void EndToEndTest::expectActions(int macro) {
  // By their ends: the presses of a key that stays down repeat by themselves.
  client->readUntil([this, macro, count = 0](const ClientEvent& event) mutable {
    const bool isEnd = macro == mouseMacro
                           ? event.kind == "ButtonRelease"
                           : event.kind == "KeyRelease" && event.detail == digitKey();
    return isEnd && ++count == 3;
  });
}

void EndToEndTest::expectSilence() {
  EXPECT_TRUE(waitUntil([&] {
    client->readAll(user);
    waitFor(silence);
    return actionsAmong(client->readAll(user)) == 0;
  })) << "the macros act on";
}

std::size_t EndToEndTest::actionsAmong(const std::vector<ClientEvent>& events) const {
  return static_cast<std::size_t>(std::ranges::count_if(events, [&](const ClientEvent& event) {
    return event.kind == "ButtonPress" || (event.kind == "KeyPress" && event.detail == digitKey());
  }));
}

}  // namespace vorrin::x11_tests
