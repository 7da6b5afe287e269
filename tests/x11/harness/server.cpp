#include "tests/x11/harness/server.h"

#include <stdexcept>

namespace vorrin::x11_tests {

Server::Server()
    // Without -noreset the server starts afresh when its last client leaves. It closes the
    // descriptor of the display number and may use it again for a client, so that must not be its
    // standard output, which it prints on.
    : process_({"sh", "-c",
                "exec Xvfb -displayfd 3 -noreset -nolisten tcp -screen 0 1280x1024x24 "
                "3>&1 >/dev/null"}) {
  const std::optional<std::string> number = process_.readLine();
  if (!number) throw std::runtime_error("no X server");
  display_ = ":" + *number;
}

Desktop::Desktop() {
  startWindowManager();
}

Desktop& Desktop::shared() {
  static Desktop desktop;
  return desktop;
}

void Desktop::startWindowManager() {
  // A window manager announces itself before it is ready, and a window shown in between it loses.
  windowManager_ = std::make_unique<Process>(
      std::vector<std::string>{"openbox", "--sm-disable", "--startup", "echo ready"},
      Environment{{"DISPLAY", server_.display()}, {"XDG_CONFIG_HOME", "/nonexistent"}});
  if (!windowManager_->readLine()) throw std::runtime_error("no window manager");
}

void Desktop::killWindowManager() {
  windowManager_.reset();
}

}  // namespace vorrin::x11_tests
