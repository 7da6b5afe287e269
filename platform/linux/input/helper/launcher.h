#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "input_helper/protocol/file_descriptor.h"
#include "platform/linux/input/helper/permission.h"

namespace vorrin::helper {

using helper_protocol::FileDescriptor;

/// How the helper gets at the devices.
enum class StartWay {
  directly,  ///< they are open to this user anyway
  silently,  ///< by a right that polkit gives without asking
  asking,    ///< polkit may ask the user
};

/// Where the helper's executable is. Polkit knows only an installed one by its name; everywhere
/// else the one made together with this program comes first.
std::string helperPath(StartWay way);

/// Whether this user may make input devices and read those there are, without anybody's leave.
bool devicesAreOpen();

/// Where the program is that changes how long the permission lasts; nothing when it is not
/// installed, and polkit does not know it.
std::optional<std::string> permissionProgram();

/// A process started for the helper's sake. It is not ended with the value: the helper ends when
/// its connection does.
class StartedProcess {
 public:
  /// The helper; `connection` becomes its standard input. `ended` is called on the main thread with
  /// the exit status; not after the value went away. Nothing when no process can be made.
  static std::unique_ptr<StartedProcess> startHelper(StartWay way, const FileDescriptor& connection,
                                                     std::function<void(int)> ended);
  /// The program of `permissionProgram`, with the term as its word: "ask", "allow" or "deny".
  static std::unique_ptr<StartedProcess> changePermission(const std::string& program,
                                                          const std::string& term,
                                                          std::function<void(int)> ended);
  ~StartedProcess();
  StartedProcess(const StartedProcess&) = delete;
  StartedProcess& operator=(const StartedProcess&) = delete;

 private:
  StartedProcess(pid_t process, std::function<void(int)> ended);
  void reap();

  pid_t process_;
  FileDescriptor watch_;
  std::function<void(int)> ended_;
  std::unique_ptr<QSocketNotifier> notifier_;
};

/// How a program gets at its helper; tests put a helper of their own there.
struct HelperStart {
  std::function<bool()> devicesAreOpen = helper::devicesAreOpen;
  std::function<void(QObject&, std::function<void(bool allowed)>)> askPermission =
      helper::askPermission;
  /// As `StartedProcess::startHelper`; the result is kept as long as the end is to be told.
  std::function<std::shared_ptr<void>(StartWay, const FileDescriptor&, std::function<void(int)>)>
      start = StartedProcess::startHelper;
};

}  // namespace vorrin::helper
