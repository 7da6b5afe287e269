#include <memory>
#include <string>
#include <vector>

#include "app/interface_self_check.h"
#include "app/logic_self_check.h"
#include "app/program_values.h"
#include "platform/application.h"
#include "ui/app.h"

namespace {

int runApplication(int argumentCount, char** argumentValues,
                   const std::vector<std::string>& arguments) {
  using vorrin::App;
  vorrin::Application application(argumentCount, argumentValues);
  const auto delegate = std::make_shared<App>(arguments, vorrin::runInterfaceSelfCheck);
  application.setDelegate(
      {.didFinishLaunching = [&delegate] { delegate->applicationDidFinishLaunching(); },
       .shouldHandleReopen =
           [&delegate](bool hasVisibleWindows) {
             return delegate->applicationShouldHandleReopen(hasVisibleWindows);
           },
       .stopAll = &App::stopAll,
       .shouldTerminateAfterLastWindowClosed =
           &App::applicationShouldTerminateAfterLastWindowClosed,
       .willTerminate = &App::applicationWillTerminate});
  return application.run();
}

}  // namespace

int main(int argumentCount, char** argumentValues) {
  const std::vector<std::string> arguments(argumentValues, argumentValues + argumentCount);
  vorrin::readArguments(argumentCount, argumentValues);
  if (vorrin::dryRun) {
    vorrin::runLogicSelfCheck();
    return 0;
  }
  return runApplication(argumentCount, argumentValues, arguments);
}
