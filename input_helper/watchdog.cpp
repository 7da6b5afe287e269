#include "input_helper/watchdog.h"

#include <systemd/sd-daemon.h>
#include <unistd.h>

namespace vorrin::input_helper {

void beat() {
  // Nobody takes the signal, which then ends the process.
  ::alarm(watchdogSeconds);
  sd_notify(0, "WATCHDOG=1");
}

}  // namespace vorrin::input_helper
