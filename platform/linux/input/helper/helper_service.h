#pragma once

#include <QObject>
#include <functional>
#include <string>

#include "platform/linux/foundation/file_descriptor.h"

namespace vorrin::helper {

/// What a call of the helper brought.
struct Reply {
  std::string refusal;    ///< why it was refused, in words; empty when it was not
  FileDescriptor socket;  ///< of a connection
};

/// How a program calls the helper; tests put a helper of their own there. No call waits. What is
/// answered is answered on the main thread, unless `receiver` goes first.
/// `method`: `connectMethod`, "AllowForGood", "AskEveryTime" or "TakeBack".
/// `mayAsk`: the user may be asked for the permission, and the answer takes as long.
using CallHelper = std::function<void(QObject& receiver, const char* method, bool mayAsk,
                                      std::function<void(Reply)> answered)>;

/// Calls the helper on the system bus.
void callHelper(QObject& receiver, const char* method, bool mayAsk,
                std::function<void(Reply)> answered);

}  // namespace vorrin::helper
