#include "driver.h"

#import <AppKit/AppKit.h>

#include "platform/fatal_error.h"
#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"
#include "platform/user_defaults.h"

namespace vorrin::driver {

namespace {

constexpr NSTimeInterval patience = 5;

NSWindow* nsWindow(const Window& window) {
  return window.native()->window;
}

NSWindow* shownSheet(const Window& window) {
  NSWindow* sheet = nsWindow(window).attachedSheet;
  precondition(sheet != nil, "a sheet is shown");
  return sheet;
}

/// Gives an event to whom it is for. Keys go to their own window: the application would give them
/// to the one that has the keyboard, and there is none while another program is the active one.
void serve(NSEvent* event) {
  if (event.type == NSEventTypeKeyDown || event.type == NSEventTypeKeyUp) {
    [event.window sendEvent:event];
  } else {
    [NSApp sendEvent:event];
  }
}

/// Takes the events that wait.
void serveEvents(NSDate* until) {
  @autoreleasepool {
    NSEvent* event = [NSApp nextEventMatchingMask:NSEventMaskAny
                                        untilDate:until
                                           inMode:NSDefaultRunLoopMode
                                          dequeue:YES];
    if (event != nil) serve(event);
  }
}

/// The views inside `root` of this class, the outer before the inner. What is inside a control is
/// AppKit's own.
template <typename Kind>
NSArray<Kind*>* viewsInside(NSView* root) {
  NSMutableArray<Kind*>* found = [NSMutableArray array];
  if ([root isKindOfClass:NSControl.class]) return found;
  for (NSView* view in root.subviews) {
    if ([view isKindOfClass:[Kind class]]) [found addObject:static_cast<Kind*>(view)];
    [found addObjectsFromArray:viewsInside<Kind>(view)];
  }
  return found;
}

/// The text that is being edited in `window`; the one of a field once that has the keyboard.
NSTextView* editor(NSWindow* window) {
  NSResponder* responder = window.firstResponder;
  precondition([responder isKindOfClass:NSTextView.class], "a field has the keyboard");
  return static_cast<NSTextView*>(responder);
}

void insert(NSTextView* text, const std::string& inserted) {
  [text insertText:nsString(inserted) replacementRange:text.selectedRange];
}

NSTextField* nsTextField(const TextField& field) {
  return nsViewAs<NSTextField>(field);
}

/// The sheet's buttons that answer the question, in the order of their answers, which are not those
/// of their places. An alert tags them so.
NSArray<NSButton*>* answerButtons(const Window& window) {
  NSMutableArray<NSButton*>* buttons = [NSMutableArray array];
  for (NSButton* button in viewsInside<NSButton>(shownSheet(window).contentView)) {
    if (button.tag >= NSAlertFirstButtonReturn) [buttons addObject:button];
  }
  [buttons sortUsingComparator:^NSComparisonResult(NSButton* left, NSButton* right) {
    return [@(left.tag) compare:@(right.tag)];
  }];
  return buttons;
}

}  // namespace

void prepareEnvironment(const std::filesystem::path& /*home*/) {}

void applicationWasMade() {
  [NSApp finishLaunching];
  [NSApp activateIgnoringOtherApps:YES];
}

void forgetStoredSettings() {
  // A program without a bundle has its domain under its own name.
  UserDefaults::removePersistentDomain(standardString(NSProcessInfo.processInfo.processName));
}

bool waitFor(const std::function<bool()>& condition) {
  NSDate* end = [NSDate dateWithTimeIntervalSinceNow:patience];
  while (!condition()) {
    if (end.timeIntervalSinceNow < 0) return false;
    serveEvents([NSDate dateWithTimeIntervalSinceNow:0.01]);
  }
  return true;
}

void deleteWhatIsLeft() {
  serveEvents(NSDate.distantPast);
}

void activate(const Window& window) {
  [nsWindow(window) makeKeyAndOrderFront:nil];
  precondition(waitFor([&window] { return isVisible(window); }), "the window is shown");
}

void hide(const Window& window) {
  [nsWindow(window) orderOut:nil];
}

void resize(const Window& window, Size size) {
  // A window that is shown is kept as small as the screen.
  hide(window);
  window.setContentSize(size);
}

void minimise(const Window& window) {
  [nsWindow(window) miniaturize:nil];
}

void takeAway(const Window& window) {
  NSWindow* native = nsWindow(window);
  for (NSWindow* sheet in native.sheets) [native endSheet:sheet returnCode:NSModalResponseAbort];
  [native orderOut:nil];
}

bool isVisible(const Window& window) {
  return nsWindow(window).visible;
}

bool isMinimised(const Window& window) {
  return nsWindow(window).miniaturized;
}

void click(const View& view) {
  NSView* native = nsView(view);
  // A click into a field that is not disabled gives it the keyboard.
  if ([native isKindOfClass:NSTextField.class]) {
    [native.window makeFirstResponder:native];
  } else {
    [nsViewAs<NSControl>(view) performClick:nil];
  }
}

void enter(const Window& window, const std::string& text) {
  NSWindow* native = nsWindow(window);
  insert(editor(native.attachedSheet == nil ? native : native.attachedSheet), text);
}

void type(const TextField& field, const std::string& text) {
  NSTextField* native = nsTextField(field);
  precondition([native.window makeFirstResponder:native], "the field takes the keyboard");
  NSTextView* edited = editor(native.window);
  [edited selectAll:nil];
  insert(edited, text);
}

void choose(const PopUpButton& popUp, int item) {
  NSPopUpButton* native = nsViewAs<NSPopUpButton>(popUp);
  precondition(native.enabled, "the pop-up opens");
  [native selectItemAtIndex:item];
  [native sendAction:native.action to:native.target];
}

std::vector<std::string> titles(const PopUpButton& popUp) {
  std::vector<std::string> titles;
  for (NSString* title in nsViewAs<NSPopUpButton>(popUp).itemTitles) {
    titles.push_back(standardString(title));
  }
  return titles;
}

std::string spokenName(const View& view) {
  NSView* native = nsView(view);
  if (native.accessibilityLabel.length > 0) return standardString(native.accessibilityLabel);
  if ([native isKindOfClass:NSButton.class]) return standardString(nsViewAs<NSButton>(view).title);
  return {};
}

Rect place(const View& view, const View& root) {
  NSView* native = nsView(view);
  NSView* outer = nsView(root);
  const NSRect frame = [native alignmentRectForFrame:native.frame];
  const NSRect inside = [native.superview convertRect:frame toView:outer];
  const double top = outer.flipped ? NSMinY(inside) : NSMaxY(outer.bounds) - NSMaxY(inside);
  return {NSMinX(inside), top, NSWidth(inside), NSHeight(inside)};
}

bool hasKeyboard(const TextField& field) {
  return nsTextField(field).currentEditor != nil;
}

std::string selectedText(const TextField& field) {
  NSText* edited = nsTextField(field).currentEditor;
  if (edited == nil) return {};
  return standardString([edited.string substringWithRange:edited.selectedRange]);
}

bool hasSheet(const Window& window) {
  return nsWindow(window).attachedSheet != nil;
}

void pressInSheet(const Window& window, Key key) {
  NSWindow* sheet = shownSheet(window);
  const bool isEnter = key == Key::enter;
  NSString* characters = isEnter ? @"\r" : @"\x1b";
  for (const NSEventType type : {NSEventTypeKeyDown, NSEventTypeKeyUp}) {
    // Posted, since what comes before the sheet sees only events of the queue.
    [NSApp postEvent:[NSEvent keyEventWithType:type
                                            location:NSZeroPoint
                                       modifierFlags:0
                                           timestamp:NSProcessInfo.processInfo.systemUptime
                                        windowNumber:sheet.windowNumber
                                             context:nil
                                          characters:characters
                         charactersIgnoringModifiers:characters
                                           isARepeat:NO
                                             keyCode:isEnter ? 36 : 53]
             atStart:NO];
  }
}

void answer(const Window& window, const std::string& title) {
  NSWindow* sheet = shownSheet(window);
  for (NSButton* button in answerButtons(window)) {
    if (standardString(button.title) != title) continue;
    [button performClick:nil];
    precondition(waitFor([&window, sheet] { return nsWindow(window).attachedSheet != sheet; }),
                 "the sheet goes away");
    return;
  }
  fatalError("the sheet has no button \"" + title + "\"");
}

std::vector<std::string> sheetTexts(const Window& window) {
  std::vector<std::string> texts;
  for (NSTextField* label in viewsInside<NSTextField>(shownSheet(window).contentView)) {
    if (!label.editable && label.stringValue.length > 0) {
      texts.push_back(standardString(label.stringValue));
    }
  }
  return texts;
}

std::vector<std::string> sheetButtons(const Window& window) {
  std::vector<std::string> titles;
  for (NSButton* button in answerButtons(window)) titles.push_back(standardString(button.title));
  return titles;
}

std::string defaultSheetButton(const Window& window) {
  for (NSButton* button in answerButtons(window)) {
    if ([button.keyEquivalent isEqualToString:@"\r"]) return standardString(button.title);
  }
  return {};
}

TextField sheetField(const Window& window) {
  for (NSTextField* field in viewsInside<NSTextField>(shownSheet(window).contentView)) {
    if (field.editable) return *TextField::from(viewOf(field));
  }
  fatalError("the sheet has no field");
}

}  // namespace vorrin::driver
