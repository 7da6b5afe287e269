#include "fake_system.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "input_helper/service.h"

namespace vorrin::input_helper {
namespace {

constexpr const char* sessionFolder = "/org/freedesktop/login1/session/";
constexpr const char* userPath = "/org/freedesktop/login1/user/own";
constexpr const char* managerPath = "/org/freedesktop/login1";
constexpr const char* managerInterface = "org.freedesktop.login1.Manager";
constexpr const char* sessionInterface = "org.freedesktop.login1.Session";
constexpr const char* authorityPath = "/org/freedesktop/PolicyKit1/Authority";
constexpr const char* authorityInterface = "org.freedesktop.PolicyKit1.Authority";

FakeSystem& self(void* system) {
  return *static_cast<FakeSystem*>(system);
}

int replyPath(sd_bus_message* call, bool isThere, const std::string& path) {
  if (isThere) return sd_bus_reply_method_return(call, "o", path.c_str());
  return sd_bus_reply_method_errorf(call, "org.freedesktop.login1.NoSessionForPID", "none");
}

int findSession(sd_bus_message* call, void* system, sd_bus_error*) {
  const bool isThere = self(system).hasOwnSession && self(system).sessions.contains("own");
  return replyPath(call, isThere, std::string(sessionFolder) + "own");
}

int findUser(sd_bus_message* call, void* system, sd_bus_error*) {
  return replyPath(call, self(system).sessions.contains("own"), userPath);
}

constexpr sd_bus_vtable manager[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("GetSessionByPID", "u", "o", findSession, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("GetUserByPID", "u", "o", findUser, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

int getDisplay(sd_bus*, const char*, const char*, const char*, sd_bus_message* reply, void*,
               sd_bus_error*) {
  return sd_bus_message_append(reply, "(so)", "own", (std::string(sessionFolder) + "own").c_str());
}

constexpr sd_bus_vtable user[] = {SD_BUS_VTABLE_START(0),
                                  SD_BUS_PROPERTY("Display", "(so)", getDisplay, 0, 0),
                                  SD_BUS_VTABLE_END};

std::string nameAt(const char* sessionPath) {
  return sessionPath + std::string_view(sessionFolder).size();
}

int hasSession(sd_bus*, const char* path, const char*, void* system, void** found, sd_bus_error*) {
  *found = system;
  return self(system).sessions.contains(nameAt(path)) ? 1 : 0;
}

int getOfSession(sd_bus*, const char* path, const char*, const char* property,
                 sd_bus_message* reply, void* system, sd_bus_error*) {
  const std::string_view name = property;
  const FakeSession& session = self(system).sessions.at(nameAt(path));
  const auto add = [reply](const char* type, auto... values) {
    return sd_bus_message_append(reply, type, values...);
  };
  if (name == "Active") return add("b", int{session.isActive});
  if (name == "LockedHint") return add("b", int{session.isLocked});
  if (name == "Remote") return add("b", int{session.isRemote});
  if (name == "Name") return add("s", session.userName.c_str());
  if (name == "Class") return add("s", session.sessionClass.c_str());
  if (name == "Seat") return add("(so)", session.seat.c_str(), "/");
  return add("(uo)", session.user, "/");
}

constexpr auto tells = SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE;
constexpr sd_bus_vtable sessionProperties[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_PROPERTY("Active", "b", getOfSession, 0, tells),
    SD_BUS_PROPERTY("LockedHint", "b", getOfSession, 0, tells),
    SD_BUS_PROPERTY("Remote", "b", getOfSession, 0, 0),
    SD_BUS_PROPERTY("Name", "s", getOfSession, 0, 0),
    SD_BUS_PROPERTY("Class", "s", getOfSession, 0, 0),
    SD_BUS_PROPERTY("Seat", "(so)", getOfSession, 0, 0),
    SD_BUS_PROPERTY("User", "(uo)", getOfSession, 0, 0),
    SD_BUS_VTABLE_END};

int replyAuthorization(sd_bus_message* call, const FakeSystem::Authorization& answer) {
  if (!answer.isTemporary) {
    return sd_bus_reply_method_return(call, "(bba{ss})", int{answer.isGiven},
                                      int{answer.wouldTakePassword}, 0);
  }
  return sd_bus_reply_method_return(call, "(bba{ss})", int{answer.isGiven}, 0, 1,
                                    "polkit.temporary_authorization_id", "1");
}

int check(sd_bus_message* call, void* system, sd_bus_error*) {
  const char* action = nullptr;
  unsigned flags = 0;
  sd_bus_message_skip(call, "(sa{sv})");
  sd_bus_message_read(call, "s", &action);
  sd_bus_message_skip(call, "a{ss}");
  sd_bus_message_read(call, "u", &flags);
  if (!self(system).authorization) {
    return sd_bus_reply_method_errorf(call, "org.freedesktop.PolicyKit1.Error.Failed", "no");
  }
  const auto& authorization = *self(system).authorization;
  if (flags == 0 || authorization.isGiven || !authorization.wouldTakePassword) {
    return replyAuthorization(call, authorization);
  }
  self(system).questions_.emplace_back(action);
  self(system).question = sd_bus_message_ref(call);
  return 1;
}

int withdraw(sd_bus_message* call, void* system, sd_bus_error*) {
  ++self(system).questionsWithdrawn;
  return sd_bus_reply_method_return(call, nullptr);
}

constexpr sd_bus_vtable authority[] = {
    SD_BUS_VTABLE_START(0),
    SD_BUS_METHOD("CheckAuthorization", "(sa{sv})sa{ss}us", "(bba{ss})", check,
                  SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_METHOD("CancelCheckAuthorization", "s", "", withdraw, SD_BUS_VTABLE_UNPRIVILEGED),
    SD_BUS_VTABLE_END};

int take(sd_bus_message* reply, void* system, sd_bus_error*) {
  auto& answer = self(system).answer.emplace();
  answer.isGiven = sd_bus_message_is_method_error(reply, nullptr) == 0;
  int socket = -1;
  if (!answer.isGiven) {
    answer.error = sd_bus_message_get_error(reply)->message;
  } else if (sd_bus_message_read(reply, "h", &socket) > 0) {
    answer.socket = FileDescriptor(::fcntl(socket, F_DUPFD_CLOEXEC, 0));
  }
  return 0;
}

}  // namespace

FakeSystem::FakeSystem()
    : folder_(::mkdtemp(std::string("/tmp/vorrin-bus-XXXXXX").data())),
      address_("unix:path=" + (folder_ / "bus").string()),
      // It says on its standard error how many files it would like to open.
      daemon_({"sh", "-c",
               "exec dbus-daemon --session --nofork --nopidfile --address=" + address_ +
                   " 2>/dev/null"}) {
  ::setenv("DBUS_SYSTEM_BUS_ADDRESS", address_.c_str(), 1);
  until([this] { return (fakes_ = openBus()) != nullptr; });
  std::filesystem::create_directory(folder_ / "decisions");
  service_ = ::fork();
  if (service_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    Uinput uinput(0);
    ::_exit(serve(uinput, (folder_ / "decisions").c_str()));
  }
  sd_bus_add_object_vtable(fakes_.get(), nullptr, managerPath, managerInterface, manager, this);
  sd_bus_add_object_vtable(fakes_.get(), nullptr, userPath, "org.freedesktop.login1.User", user,
                           this);
  sd_bus_add_fallback_vtable(fakes_.get(), nullptr, "/org/freedesktop/login1/session",
                             sessionInterface, sessionProperties, hasSession, this);
  sd_bus_add_object_vtable(fakes_.get(), nullptr, authorityPath, authorityInterface, authority,
                           this);
  for (const char* name : {"org.freedesktop.login1", "org.freedesktop.PolicyKit1"}) {
    EXPECT_GE(sd_bus_request_name(fakes_.get(), name, 0), 0);
  }
  caller_ = openBus();
  EXPECT_TRUE(until([this] {
    return sd_bus_get_name_creds(caller_.get(), "org.vorrin.InputHelper", 0, nullptr) >= 0;
  }));
}

FakeSystem::~FakeSystem() {
  if (question != nullptr) sd_bus_message_unref(question);
  if (service_ != 0) {
    ::kill(service_, SIGKILL);
    ::waitpid(service_, nullptr, 0);
  }
  std::filesystem::remove_all(folder_);
}

Bus FakeSystem::openBus() {
  sd_bus* bus = nullptr;
  sd_bus_open_system(&bus);
  return Bus(bus);
}

void FakeSystem::turn() {
  for (auto* const bus : {fakes_.get(), caller_.get()}) {
    while (bus != nullptr && sd_bus_process(bus, nullptr) > 0) {
    }
  }
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

bool FakeSystem::until(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    turn();
  }
  return true;
}

void FakeSystem::tellChange(const std::string& name, const char* property) {
  sd_bus_emit_properties_changed(fakes_.get(), (sessionFolder + name).c_str(), sessionInterface,
                                 property, nullptr);
}

void FakeSystem::tell(const std::string& name, const char* signal) {
  sd_bus_emit_signal(fakes_.get(), (sessionFolder + name).c_str(), sessionInterface, signal,
                     nullptr);
}

void FakeSystem::tellSleep(bool isAsleep) {
  sd_bus_emit_signal(fakes_.get(), managerPath, managerInterface, "PrepareForSleep", "b",
                     static_cast<int>(isAsleep));
}

void FakeSystem::tellRemoved(const std::string& name) {
  sd_bus_emit_signal(fakes_.get(), managerPath, managerInterface, "SessionRemoved", "so",
                     name.c_str(), (sessionFolder + name).c_str());
}

void FakeSystem::tellAuthorityChanged() {
  sd_bus_emit_signal(fakes_.get(), authorityPath, authorityInterface, "Changed", nullptr);
}

void FakeSystem::answerQuestion(bool isGiven) {
  ASSERT_NE(question, nullptr);
  replyAuthorization(question, {isGiven, !isGiven, isGiven});
  question = sd_bus_message_unref(question);
}

void FakeSystem::call(const char* method, bool mayAsk) {
  answer.reset();
  sd_bus_message* message = nullptr;
  sd_bus_message_new_method_call(caller_.get(), &message, "org.vorrin.InputHelper",
                                 "/org/vorrin/InputHelper", "org.vorrin.InputHelper", method);
  sd_bus_message_set_allow_interactive_authorization(message, mayAsk ? 1 : 0);
  sd_bus_call_async(caller_.get(), nullptr, message, take, this, 0);
  sd_bus_message_unref(message);
}

Answer FakeSystem::ask(const char* method, bool mayAsk) {
  call(method, mayAsk);
  EXPECT_TRUE(until([this] { return answer.has_value(); })) << method;
  return answer ? std::move(*answer) : Answer();
}

void FakeSystem::leaveCaller() {
  caller_ = openBus();
}

void FakeSystem::endBus() {
  daemon_.signal(SIGKILL);
  daemon_.waitForEnd();
}

bool FakeSystem::untilServiceEnded() {
  return until([this] {
    if (::waitpid(service_, nullptr, WNOHANG) == service_) service_ = 0;
    return service_ == 0;
  });
}

}  // namespace vorrin::input_helper
