#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"
#include "platform/workspace.h"

namespace vorrin {

void openAccessibilitySettings() {
  if (windows().empty()) return;
  Alert alert;
  alert.messageText = "No permission is needed in an X11 session";
  alert.informativeText =
      "Here every program may listen to the keyboard and send key presses and clicks. If Vorrin "
      "still says that its permission is missing, the X server lacks one of the two extensions it "
      "works with: XInput 2.2 or XTEST. Enable both in the X server, then choose “Retry "
      "connection”.\n\nClosing Vorrin takes everything back: nothing listens and no key or button "
      "stays pressed.";
  alert.buttons = {"Close"};
  presentSheet(alert, 0, *windows().front(), [](int) {});
}

}  // namespace vorrin
