#include "service_test.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
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

MachineService::MachineService() {
  const bool isNew = !keyboard;
  if (isNew) keyboard.emplace(keyboardName);
  EXPECT_TRUE(until([this] { return watch.has(keyboardPlace); }));
  // The helper knows no device before udev does.
  EXPECT_TRUE(!isNew || succeeds("udevadm settle"));
  caller = std::make_unique<Caller>(login);
}

MachineService::~MachineService() {
  forgetDecisions();
  if (keyboard) keyboard->releaseAll();
}

void MachineService::start() {
  allow(player);
  auto answer = caller->call("Connect");
  ASSERT_EQ(answer.error, "");
  peer.emplace(std::move(answer.socket));
  // What is posted before the watch has the devices open it does not see.
  ASSERT_TRUE(until([this] {
    return !peer->saidOf<Availability>().empty() && watch.has(ownPlace, "Vorrin pointer");
  }));
}

void MachineService::startAndGrab() {
  ASSERT_NO_FATAL_FAILURE(start());
  ASSERT_NO_FATAL_FAILURE(holdKeyboard());
}

void MachineService::holdKeyboard() {
  ASSERT_TRUE(until([this] {
    const auto told = peer->saidOf<Availability>();
    return !told.empty() && told.back() == Availability{} && watch.has(ownPlace, "Vorrin pointer");
  }));
  peer->configure({KEY_TAB});
  ASSERT_TRUE(until([this] { return !keyboardIsFree(); }));
  peer->forget();
  watch.forget();
}

bool MachineService::until(const std::function<bool()>& condition,
                           std::chrono::milliseconds limit) {
  for (const auto end = Clock::now() + limit; Clock::now() < end;) {
    watch.look();
    if (peer) peer->listen();
    if (condition()) return true;
    std::this_thread::sleep_for(std::chrono::milliseconds(4));
  }
  return false;
}

bool MachineService::untilSeen(const std::string& key) {
  return until([&] { return std::ranges::count(watch.keys(), key) > 0; });
}

bool MachineService::untilLeft() {
  return until([this] { return peer->isLeft(); });
}

bool MachineService::keyboardIsFree() {
  return watch.isFree(keyboardPlace, keyboardName);
}

bool MachineService::hasEnded(EndReason reason) {
  return untilLeft() && std::ranges::count(peer->saidOf<Ending>(), Ending{reason}) == 1;
}

bool MachineService::typePassing(int key) {
  watch.forget();
  keyboard->tap(key);
  return untilSeen(up(key));
}

void MachineService::press(std::initializer_list<int> keys) {
  for (const int key : keys) keyboard->press(key);
}

void MachineService::release(std::initializer_list<int> keys) {
  for (const int key : keys) keyboard->release(key);
}

void MachineService::expectKeyboardGivenBack() {
  EXPECT_TRUE(until([this] { return !watch.has(ownPlace, keyboardName); }));
  EXPECT_TRUE(until([this] { return keyboardIsFree(); }));
  EXPECT_TRUE(typePassing(KEY_X));
  EXPECT_EQ(watch.seen().back().place, keyboardPlace);
  EXPECT_THAT(watch.held(), testing::IsEmpty());
}

pid_t MachineService::service() {
  return std::atoi(
      outputOf("systemctl show --property=MainPID --value vorrin-input-helper").c_str());
}

void MachineService::signalService(int number) {
  ASSERT_EQ(::kill(service(), number), 0);
}

}  // namespace vorrin::machine
