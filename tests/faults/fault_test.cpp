#include "fault_test.h"

#include <X11/Xlib.h>

#include <array>

#include "tests/x11/harness/display.h"

namespace vorrin::faults {

void FaultTest::passMoment(std::chrono::microseconds bound) {
  waitFor(std::chrono::microseconds(
      std::uniform_int_distribution<std::int64_t>(0, bound.count())(random)));
}

std::string FaultTest::heldInput() const {
  const auto display = openDisplay(desktop.display());
  std::string text;
  std::array<char, 32> keys{};
  XQueryKeymap(display.get(), keys.data());
  for (unsigned key = 0; key < 256; ++key) {
    const unsigned byte = static_cast<unsigned char>(keys[key / 8]);
    if (((byte >> (key % 8)) & 1U) != 0) text += "key " + std::to_string(key) + " ";
  }
  Window window = 0;
  std::array<int, 4> place{};
  unsigned buttons = 0;
  XQueryPointer(display.get(), DefaultRootWindow(display.get()), &window, &window, &place[0],
                &place[1], &place[2], &place[3], &buttons);
  return (buttons & Button1Mask) == 0 ? text : text + "the left button";
}

void FaultTest::expectUsableInput() {
  EXPECT_TRUE(waitUntil([&] { return heldInput().empty(); })) << heldInput();
  user.pointAt(client->window());
  ASSERT_TRUE(windows.activate(client->window()));
  client->readAll(user);
  user.type("a");
  EXPECT_EQ(keysOf(client->readAll(user)), tapOf(keys::a));
}

void FaultTest::expectWorkingProgram() {
  settings = stored();
  startProgram();
  showClient();
  // What arrived before would pass for the macros' actions.
  client->readAll(user);
  startMacros();
  user.tap(keys::escape);
  expectSilence();
}

}  // namespace vorrin::faults
