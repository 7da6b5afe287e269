#include <filesystem>

#include "platform/linux/input/helper/backend.h"
#include "platform/linux/input/helper/click_rule.h"
#include "platform/linux/input/input_backend.h"
#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"
#include "platform/workspace.h"

namespace vorrin {

namespace {

/// What has to be installed, or is not in effect yet; empty when nothing is left to do.
const char* installationNotice() {
  if (!std::filesystem::exists(
          "/usr/share/dbus-1/system-services/org.vorrin.InputHelper.service")) {
    return "\n\nThe input helper is not installed here. Vorrin’s package brings it; in the folder "
           "that Vorrin was built in, “scripts/input-helper install build/release” installs it.";
  }
  switch (helper::clickRule()) {
    case helper::ClickRule::missing:
      return "\n\nClicks closer together than 0.03 seconds get lost here: the file that lets them "
             "through, /usr/share/libinput/60-vorrin.quirks, is not installed. Vorrin’s package "
             "brings it.";
    case helper::ClickRule::installedLater:
      return "\n\nClicks closer together than 0.03 seconds get lost until your next login: the "
             "file "
             "that lets them through was installed after this session began.";
    case helper::ClickRule::inEffect:
      return "";
  }
  return "";
}

/// What may be decided where the input helper does the work, and what the right means.
void presentHelperPermission(helper::Backend& backend, WindowWidget& window) {
  Alert alert;
  alert.messageText = "Who may use your keyboard";
  alert.informativeText =
      "In this session no ordinary program can read the keyboard or click, and Vorrin cannot "
      "either. Its input helper does both, and that is the right you give: to pass your keys on, "
      "to ask Vorrin about the six shortcut keys and tell it of Escape, and to press digits and "
      "click. No other key leaves the helper, and the keyboards stay closed to all other "
      "programs.\n\n"
      "“Allow for Good” holds for you alone, at this machine, until you take it back; any program "
      "of yours could then start the helper, for the same and no more. “Ask Every Time” asks at "
      "each start of Vorrin. “Take Back” lets go at once and refuses from then on.\n\n"
      "Escape, Backspace and Enter held down together end the helper at any moment.";
  alert.informativeText += installationNotice();
  constexpr int allow = 1;
  constexpr int ask = 2;
  constexpr int takeBack = 3;
  alert.buttons = {"Close", "Allow for Good", "Ask Every Time", "Take Back"};
  presentSheet(alert, window, [&backend](int answer) {
    if (answer == allow) backend.allowForGood();
    if (answer == ask) backend.askEveryTime();
    if (answer == takeBack) backend.takeBack();
  });
}

}  // namespace

void openAccessibilitySettings() {
  WindowWidget* const window = firstWindow();
  if (window == nullptr) return;
  if (auto* const backend = helperBackend()) return presentHelperPermission(*backend, *window);
  Alert alert;
  alert.messageText = "No permission is needed in an X11 session";
  alert.informativeText =
      "Here every program may listen to the keyboard and send key presses and clicks. If Vorrin "
      "still says that its permission is missing, the X server lacks one of the two extensions it "
      "works with: XInput 2.2 or XTEST. Enable both in the X server, then choose “Retry "
      "connection”.\n\nClosing Vorrin takes everything back: nothing listens and no key or button "
      "stays pressed.";
  alert.buttons = {"Close"};
  presentSheet(alert, *window, [](int) {});
}

}  // namespace vorrin
