// vorrin-input-helper: the service org.vorrin.InputHelper of the system bus. Started by systemd, in
// a unit that leaves it hardly anything, or, where systemd is not the first process, by the bus as
// root.

#include "input_helper/log.h"
#include "input_helper/rights.h"
#include "input_helper/service.h"
#include "input_helper/uinput.h"

int main() {
  using namespace vorrin::input_helper;
  // These are opened with rights that are given up then.
  Uinput uinput;
  if (giveUpRights()) return serve(uinput, decisionsFolder);
  log("it cannot give up its rights; is there a user vorrin-input?");
  return 1;
}
