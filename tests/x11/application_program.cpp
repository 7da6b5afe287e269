// An application with nothing to do. Tells on its standard output what its delegate is told.
#include <cstdio>

#include "platform/application.h"

namespace {

void tell(const char* what) {
  std::puts(what);
  std::fflush(stdout);
}

}  // namespace

int main(int count, char** arguments) {
  vorrin::Application application(count, arguments);
  application.setDelegate({.didFinishLaunching = [] { tell("launched"); },
                           .shouldHandleReopen = {},
                           .stopAll = {},
                           .shouldTerminateAfterLastWindowClosed = {},
                           .willTerminate = [] { tell("will terminate"); }});
  return application.run();
}
