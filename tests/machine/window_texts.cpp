// Vorrin itself, saying on its standard output whenever the line at the bottom of its
// window changes: "status TEXT".

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "app/program_values.h"
#include "platform/application.h"
#include "platform/run_loop.h"
#include "platform/timer.h"
#include "ui/app.h"

int main(int count, char** arguments) {
  vorrin::readArguments(count, arguments);
  vorrin::Application application(count, arguments);
  const auto app = std::make_shared<vorrin::App>(std::vector<std::string>{arguments[0]}, nullptr);
  application.setDelegate(
      {.didFinishLaunching = [&] { app->applicationDidFinishLaunching(); },
       .shouldHandleReopen =
           [&](bool visible) { return app->applicationShouldHandleReopen(visible); },
       .stopAll = &vorrin::App::stopAll,
       .shouldTerminateAfterLastWindowClosed =
           &vorrin::App::applicationShouldTerminateAfterLastWindowClosed,
       .willTerminate = &vorrin::App::applicationWillTerminate});
  std::string last;
  const vorrin::Timer watch(0.05, [&] {
    const auto text = app->status.text();
    if (text == last) return;
    last = text;
    std::printf("status %s\n", text.c_str());
    std::fflush(stdout);
  });
  vorrin::RunLoop::main().add(watch, vorrin::RunLoopMode::common);
  return application.run();
}
