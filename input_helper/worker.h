#pragma once

#include "input_helper/opener.h"
#include "input_helper/privileges.h"
#include "input_helper/protocol/file_descriptor.h"

namespace vorrin::input_helper {

/// The unprivileged part of the program: serves the main program at the other end of `connection`
/// until it is gone, breaks the protocol or the permission ends. Returns the exit status.
/// `permissionNeeded`: the right to the devices was given by polkit.
int serveMainProgram(FileDescriptor connection, Opener opener, const Peer& peer,
                     bool permissionNeeded);

}  // namespace vorrin::input_helper
