#pragma once

#include <functional>

#include "platform/timer.h"

namespace vorrin {

/// One look of the permission watch: connects when there is no tap but the process is trusted,
/// claims anew what the present tap should have, and refreshes in every case. Never makes the
/// system ask the user.
void permissionWatchTick(const std::function<void()>& connect,
                         const std::function<void()>& refresh);

/// Has `permissionWatchTick` run once a second from now on, except while a menu or modal panel
/// tracks events. The run loop keeps the timer going until it is invalidated.
Timer schedulePermissionPoll(std::function<void()> connect, std::function<void()> refresh);

}  // namespace vorrin
