#pragma once

#include <sys/types.h>
#include <systemd/sd-bus.h>

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/foundation/file_descriptor.h"
#include "tests/x11/harness/process.h"

namespace vorrin::input_helper {

struct BusUnref {
  void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, BusUnref>;

/// A login session as the fake login manager tells of it.
struct FakeSession {
  uid_t user = ::geteuid();
  std::string userName = "player";
  std::string seat = "seat0";
  std::string sessionClass = "user";
  bool isRemote = false;
  bool isActive = true;
  bool isLocked = false;
};

/// What a call of the helper brought.
struct Answer {
  bool isGiven = false;
  std::string error;
  FileDescriptor socket;
};

/// A system bus with the helper's service on it, as a process of its own, and with a login manager
/// and a polkit that do as a test says. Everything happens while the test waits for something.
class FakeSystem {
 public:
  FakeSystem();
  FakeSystem(const FakeSystem&) = delete;
  FakeSystem& operator=(const FakeSystem&) = delete;
  ~FakeSystem();

  /// Sessions by the last part of their path. The one named "own" is that of the test's process.
  std::map<std::string, FakeSession> sessions{{"own", {}}};
  bool hasOwnSession = true;  ///< else the process belongs to none but the user's display's
  void tellChange(const std::string& session, const char* property);
  void tell(const std::string& session, const char* signal);
  void tellSleep(bool isAsleep);
  void tellRemoved(const std::string& session);

  /// What polkit says of each action, without and with a question; nothing: an error.
  struct Authorization {
    bool isGiven = false;
    bool wouldTakePassword = true;
    bool isTemporary = false;
  };
  std::optional<Authorization> authorization = Authorization{};
  void tellAuthorityChanged();
  /// Questions that are open, by the actions, and their answer.
  [[nodiscard]] const std::vector<std::string>& questions() const { return questions_; }
  void answerQuestion(bool isGiven);
  int questionsWithdrawn = 0;

  /// Calls the service; the answer comes later.
  void call(const char* method, bool mayAsk = false);
  std::optional<Answer> answer;
  /// Calls it and waits.
  Answer ask(const char* method, bool mayAsk = false);

  bool until(const std::function<bool()>& condition);
  void leaveLoginManager() { sd_bus_release_name(fakes_.get(), "org.freedesktop.login1"); }
  /// The program that calls goes off the bus, and comes back as another.
  void leaveCaller();
  void endBus();
  bool untilServiceEnded();

  /// For the fakes' own calls.
  sd_bus_message* question = nullptr;
  std::vector<std::string> questions_;

 private:
  void turn();
  static Bus openBus();

  std::filesystem::path folder_;
  std::string address_;
  x11_tests::Process daemon_;
  pid_t service_ = 0;
  Bus fakes_;
  Bus caller_;
};

}  // namespace vorrin::input_helper
