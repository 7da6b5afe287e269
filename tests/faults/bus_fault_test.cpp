#include <array>
#include <csignal>

#include "fault_test.h"
#include "input_watch.h"
#include "message_bus.h"

namespace vorrin::faults {
namespace {

constexpr auto ownName = "org.vorrin.Vorrin";
constexpr auto ownPath = "/org/vorrin/Vorrin";

// The message buses and who is on them are hurt.
struct BusFault : FaultTest {
  MessageBus session{home.path() / "session-bus"};
  MessageBus system{home.path() / "system-bus"};

  BusFault() {
    programEnvironment = {{"DBUS_SESSION_BUS_ADDRESS", session.address()},
                          {"DBUS_SYSTEM_BUS_ADDRESS", system.address()}};
  }

  bool answers() {
    return session.call(ownName, ownPath, "org.freedesktop.Application.ActivateAction",
                        {"no-such", "[]", "{}"}) == "()";
  }

  bool waitForInhibitor() {
    return waitUntil([&] {
      return system
                 .call("org.freedesktop.login1", "/org/freedesktop/login1",
                       "org.freedesktop.login1.Manager.ListInhibitors")
                 .find("'sleep'") != std::string::npos;
    });
  }

  void sleep(bool begins) {
    EXPECT_EQ(system.call("org.freedesktop.login1", "/org/freedesktop/login1",
                          "org.freedesktop.DBus.Mock.EmitSignal",
                          {"org.freedesktop.login1.Manager", "PrepareForSleep", "b",
                           begins ? "[<true>]" : "[<false>]"}),
              "()");
  }
};

/// A login manager that does as it is told.
struct LoginManager {
  Process process;

  explicit LoginManager(const MessageBus& bus)
      : process({"/usr/bin/python3", "-m", "dbusmock", "--template", "logind"},
                {{"DBUS_SYSTEM_BUS_ADDRESS", bus.address()}}) {
    const bool isThere = waitUntil([&] {
      return !bus.call("org.freedesktop.login1", "/org/freedesktop/login1",
                       "org.freedesktop.DBus.Mock.AddSession",
                       {"auto", "seat0", "uint32 0", "user", "true"})
                  .empty();
    });
    EXPECT_TRUE(isThere) << "no login manager";
  }
};

TEST_F(BusFault, without_the_session_bus_the_macros_go_on) {
  startMacros();
  session.kill();
  client->readAll(user);
  expectActions(mouseMacro);
  user.tap(keys::escape);
  expectSilence();
  expectUsableInput();
}

TEST_F(BusFault, a_login_manager_that_came_back_delays_sleep_until_the_macros_are_stopped) {
  auto manager = std::make_unique<LoginManager>(system);
  start();
  ASSERT_TRUE(waitForInhibitor());
  runMacros();
  manager.reset();
  expectActions(mouseMacro);
  manager = std::make_unique<LoginManager>(system);
  EXPECT_TRUE(waitForInhibitor());
  sleep(true);
  expectSilence();
  sleep(false);
  runMacros();
}

// What anybody on the session bus may send.
struct HostilePeer : BusFault {
  std::string sendTo(const std::string& method, const std::vector<std::string>& arguments) {
    return session.call(ownName, ownPath, method, arguments);
  }
};

TEST_F(HostilePeer, can_show_the_window_and_stop_the_macros_and_nothing_else) {
  start();
  ASSERT_TRUE(waitUntil([&] { return answers(); }));
  const std::string interfaces =
      session.call(ownName, ownPath, "org.freedesktop.DBus.Introspectable.Introspect");
  const Stored before = readStored();
  for (const char* method :
       {"org.freedesktop.Application.deleteLater", "org.freedesktop.Application.destroyed",
        "org.freedesktop.Application.claim", "local.vorrin.SingleInstance.deleteLater",
        "org.freedesktop.Application.ActivateAction", "org.freedesktop.Application.Open",
        "org.freedesktop.DBus.Properties.GetAll", "no.such.Interface.Method"}) {
    sendTo(method, {});
    sendTo(method, {"'text'"});
    sendTo(method, {"uint64 18446744073709551615", "-1", "''"});
  }
  for (const std::string& action : {std::string("start"), std::string("run"), std::string("quit"),
                                    std::string("stop-all\n"), std::string(100'000, 'x')}) {
    EXPECT_EQ(sendTo("org.freedesktop.Application.ActivateAction",
                     {"'" + action.substr(0, 5000) + "'", "[<'a'>, <1>, <@av []>]",
                      "{'activation-token': <[byte 0, 255]>}"}),
              "()");
  }
  EXPECT_TRUE(answers());
  InputWatch watch(desktop.display());
  waitFor(std::chrono::milliseconds(300));
  EXPECT_EQ(watch.takePresses(), 0) << "a macro was started";
  EXPECT_EQ(readStored(), before);
  EXPECT_EQ(interfaces.find("deleteLater"), std::string::npos);
}

TEST_F(HostilePeer, that_floods_the_program_with_calls_does_not_keep_the_macros_from_stopping) {
  start();
  ASSERT_TRUE(waitUntil([&] { return answers(); }));
  runMacros();
  std::array<std::unique_ptr<Process>, 3> peers;
  for (auto& peer : peers) {
    peer = std::make_unique<Process>(std::vector<std::string>{
        "sh", "-c",
        "while :; do dbus-send --address=" + session.address() + " --dest=" + ownName +
            " --type=method_call " + ownPath +
            " org.freedesktop.Application.ActivateAction string:none array:string:x "
            "dict:string:string:a,b; done"});
  }
  waitFor(std::chrono::milliseconds(500));
  expectActions(mouseMacro);
  user.tap(keys::escape);
  expectSilence();
  peers = {};
  expectUsableInput();
}

TEST_F(HostilePeer, that_says_it_is_the_login_manager_is_not_heard) {
  auto manager = std::make_unique<LoginManager>(system);
  start();
  ASSERT_TRUE(waitForInhibitor());
  runMacros();
  Process liar({"dbus-send", "--address=" + system.address(), "--type=signal",
                "/org/freedesktop/login1", "org.freedesktop.login1.Manager.PrepareForSleep",
                "boolean:true"});
  ASSERT_EQ(liar.waitForEnd(), Ending{});
  client->readAll(user);
  expectActions(mouseMacro);
  expectActions(keyboardMacro);
}

}  // namespace
}  // namespace vorrin::faults
