#include "platform/alert.h"

#import <AppKit/AppKit.h>

#include <utility>

#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"

namespace vorrin {

namespace {

constexpr unsigned short escapeKey = 53;

NSAlert* nsAlert(const Alert& alert) {
  NSAlert* native = [[NSAlert alloc] init];
  native.messageText = nsString(alert.messageText);
  native.informativeText = nsString(alert.informativeText);
  for (const std::string& title : alert.buttons) [native addButtonWithTitle:nsString(title)];
  // AppKit gives every button called "Cancel" the Escape key, also where it is the default.
  native.buttons.firstObject.keyEquivalent = @"\r";
  if (alert.accessory) {
    NSView* accessory = nsView(*alert.accessory);
    // An alert makes room for the accessory's frame, which follows its fixed lengths here.
    accessory.frameSize = accessory.fittingSize;
    native.accessoryView = accessory;
    [native layout];
  }
  // An open question must not hold up quitting or logging out; it counts as not answered then.
  native.window.preventsApplicationTerminationWhenModal = NO;
  return native;
}

/// Has Escape press `button` too, which has another key of its own. Ends with `removeMonitor:`.
id pressWithEscape(NSButton* button, NSWindow* sheet) {
  return [NSEvent
      addLocalMonitorForEventsMatchingMask:NSEventMaskKeyDown
                                   handler:^NSEvent*(NSEvent* event) {
                                     if (event.window != sheet || event.keyCode != escapeKey) {
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
  id escape = isSafeByDefault ? pressWithEscape(native.buttons.firstObject, native.window) : nil;
  const auto answered = std::move(completion);
  [native beginSheetModalForWindow:parent
                 completionHandler:^(NSModalResponse response) {
                   if (escape != nil) [NSEvent removeMonitor:escape];
                   // Taken away now, so that the answer may ask the next question.
                   [native.window orderOut:nil];
                   // Other responses say that the sheet was ended without an answer.
                   const NSInteger index = response - NSAlertFirstButtonReturn;
                   if (index >= 0 && answered) answered(static_cast<int>(index));
                 }];
  if (alert.accessory) [native.window makeFirstResponder:nsView(*alert.accessory)];
}

}  // namespace vorrin
