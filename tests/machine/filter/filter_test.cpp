#include "filter_test.h"

#include <linux/input-event-codes.h>

#include <algorithm>
#include <thread>

namespace vorrin::machine {

using namespace helper_protocol;
using Clock = std::chrono::steady_clock;

std::string down(int key) {
  return std::to_string(key) + " 1";
}

std::string up(int key) {
  return std::to_string(key) + " 0";
}

MachineFilter::MachineFilter() {
  keyboard.emplace(keyboardName);
  EXPECT_TRUE(until([this] { return watch.has(keyboardPlace); }));
}

void MachineFilter::turn() {
  watch.look();
  if (helper) helper->listen();
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

bool MachineFilter::until(const std::function<bool()>& condition, std::chrono::milliseconds limit) {
  for (const auto end = Clock::now() + limit; Clock::now() < end;) {
    turn();
    if (condition()) return true;
  }
  return false;
}

bool MachineFilter::untilSeen(const std::string& key) {
  return until([&] { return std::ranges::count(watch.keys(), key) > 0; });
}

void MachineFilter::pass(std::chrono::milliseconds duration) {
  for (const auto end = Clock::now() + duration; Clock::now() < end;) turn();
}

bool MachineFilter::keyboardIsFree() {
  return watch.isFree(keyboardPlace, keyboardName);
}

void MachineFilter::start() {
  helper = std::make_unique<HelperProcess>();
  ASSERT_TRUE(until([this] { return !helper->saidOf<Availability>().empty(); })) << helper->log();
}

void MachineFilter::startAndGrab() {
  start();
  helper->configure({KEY_TAB});
  ASSERT_TRUE(until([this] { return !keyboardIsFree(); })) << helper->log();
  forget();
}

void MachineFilter::forget() {
  watch.forget();
  helper->forget();
}

bool MachineFilter::typePassing(int key) {
  keyboard->tap(key);
  return untilSeen(up(key));
}

bool MachineFilter::untilHelperEnded(std::chrono::milliseconds limit) {
  return until([this] { return helper->ended(); }, limit);
}

void MachineFilter::expectKeyboardGivenBack() {
  EXPECT_TRUE(until([this] { return !watch.has(ownPlace, keyboardName); }));
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  watch.forget();
  EXPECT_TRUE(typePassing(KEY_X));
  EXPECT_EQ(watch.seen().back().place, keyboardPlace);
  EXPECT_THAT(watch.held(), testing::IsEmpty());
}

}  // namespace vorrin::machine
