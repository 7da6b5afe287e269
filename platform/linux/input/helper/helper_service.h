#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::helper {

/// What asking the helper for a connection brought.
struct Connected {
  FileDescriptor socket;  ///< closed when there is none
  std::string refusal;    ///< why not, in words
};

/// How a program reaches the helper; tests put a helper of their own there. No call waits. What is
/// answered is answered on the main thread, unless `receiver` goes first.
struct HelperService {
  /// `mayAsk`: the user may be asked for the permission, and the answer takes as long.
  std::function<void(QObject& receiver, bool mayAsk, std::function<void(Connected)> answered)>
      connect;
  /// `wish`: "AllowForGood", about which the user is asked, "AskEveryTime" or "TakeBack".
  std::function<void(QObject& receiver, const char* wish, std::function<void(bool done)> answered)>
      decide;
};

/// The helper on the system bus.
HelperService helperOnSystemBus();

}  // namespace vorrin::helper
