#include "platform/alert.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/key_press_native.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"

namespace vorrin {

namespace {

NSAlert* nsAlert(const Alert& alert) {
  NSAlert* native = [[NSAlert alloc] init];
  native.messageText = nsString(alert.messageText);
  native.informativeText = nsString(alert.informativeText);
  for (const std::string& title : alert.buttons) [native addButtonWithTitle:nsString(title)];
  // AppKit gives every button called "Cancel" the Escape key, also where it is the default.
  native.buttons.firstObject.keyEquivalent = @"\r";
  if (alert.destructiveButton) {
    const auto index = static_cast<NSUInteger>(*alert.destructiveButton);
    native.buttons[index].hasDestructiveAction = YES;
  }
  if (alert.accessory) {
    // An alert makes room for the frame of its accessory.
    native.accessoryView = nsView(*alert.accessory);
    [native layout];
  }
  // An open question must not hold up quitting or logging out; it counts as not answered then.
  native.window.preventsApplicationTerminationWhenModal = NO;
  return native;
}

/// Has the keys that cancel press `button` too, which has another key of its own. Ends with
/// `removeMonitor:`.
id pressWhenCancelled(NSButton* button, NSWindow* sheet) {
  return [NSEvent
      addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                   handler:^NSEvent*(NSEvent* event) {
                                     if (event.window != sheet || !isCancelKey(keyPressOf(event))) {
                                       return event;
                                     }
                                     [button performClick:nil];
                                     return nil;
                                   }];
}

}  // namespace

void beginSheet(const Alert& alert, const Window& window, std::function<void(int)> completion) {
  NSWindow* parent = window.native()->window;
  if (parent.attachedSheet != nil) return;
  NSAlert* native = nsAlert(alert);
  // Which the system's own setting may not be.
  native.window.appearance = parent.appearance;
  const bool isSafeByDefault = !alert.buttons.empty() && alert.buttons.front() == "Cancel";
  id cancelling =
      isSafeByDefault ? pressWhenCancelled(native.buttons.firstObject, native.window) : nil;
  const auto answered = std::move(completion);
  [native beginSheetModalForWindow:parent
                 completionHandler:^(NSModalResponse response) {
                   if (cancelling != nil) [NSEvent removeMonitor:cancelling];
                   // Taken away now, so that the answer may ask the next question.
                   [native.window orderOut:nil];
                   // Other responses say that the sheet was ended without an answer.
                   const NSInteger index = response - NSAlertFirstButtonReturn;
                   if (index >= 0 && answered) answered(static_cast<int>(index));
                 }];
  if (alert.accessory) [native.window makeFirstResponder:nsView(*alert.accessory)];
}

}  // namespace vorrin
