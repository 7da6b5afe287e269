#include "platform/alert.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"

namespace vorrin {

namespace {

NSAlert* nsAlert(const Alert& alert) {
  NSAlert* native = [[NSAlert alloc] init];
  native.messageText = nsString(alert.messageText);
  native.informativeText = nsString(alert.informativeText);
  for (const std::string& title : alert.buttons) [native addButtonWithTitle:nsString(title)];
  if (alert.accessory) {
    NSView* accessory = nsView(*alert.accessory);
    // An alert makes room for the accessory's frame, which follows its fixed lengths here.
    accessory.frameSize = accessory.fittingSize;
    native.accessoryView = accessory;
    [native layout];
  }
  // A first button called "Cancel" has the Escape key as its own; Return belongs to it as well.
  if (native.buttons.count > 0) native.window.defaultButtonCell = native.buttons.firstObject.cell;
  return native;
}

}  // namespace

void beginSheet(const Alert& alert, const Window& window, std::function<void(int)> completion) {
  NSWindow* parent = window.native()->window;
  if (parent.attachedSheet != nil) return;
  NSAlert* native = nsAlert(alert);
  const auto answered = std::move(completion);
  [native beginSheetModalForWindow:parent
                 completionHandler:^(NSModalResponse response) {
                   // Other responses say that the sheet was ended without an answer.
                   const NSInteger index = response - NSAlertFirstButtonReturn;
                   if (index >= 0 && answered) answered(static_cast<int>(index));
                 }];
  if (alert.accessory) [native.window makeFirstResponder:nsView(*alert.accessory)];
}

}  // namespace vorrin
