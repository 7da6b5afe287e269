#include <memory>
#include <string>
#include <vector>

#include "app/interface_self_check.h"
#include "platform/application.h"

namespace {

// The real program, but for a label so wide that it hangs out of the window.
void checkWithClippedControl(vorrin::App& app) {
  app.status.setWidth(900);
  vorrin::runInterfaceSelfCheck(app);
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
  const std::vector<std::string> arguments(argumentValues, argumentValues + argumentCount);
  vorrin::Application application(argumentCount, argumentValues);
  const auto app = std::make_shared<vorrin::App>(arguments, checkWithClippedControl);
  application.setDelegate({.didFinishLaunching = [&app] { app->applicationDidFinishLaunching(); },
                           .shouldHandleReopen = {},
                           .stopAll = {},
                           .shouldTerminateAfterLastWindowClosed = {},
                           .willTerminate = {}});
  return application.run();
}
