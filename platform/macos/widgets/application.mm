#include "platform/application.h"

#import <AppKit/AppKit.h>

#include <memory>
#include <utility>

#include "platform/macos/widgets/running_instance.h"

/// Passes what AppKit tells its delegate on to an `ApplicationDelegate`.
@interface VorrinApplicationDelegate : NSObject <NSApplicationDelegate>
- (instancetype)initWithDelegate:(vorrin::ApplicationDelegate)delegate;
@end

@implementation VorrinApplicationDelegate {
  vorrin::ApplicationDelegate _delegate;
  std::shared_ptr<void> _reopening;
}

- (instancetype)initWithDelegate:(vorrin::ApplicationDelegate)delegate {
  self = [super init];
  if (self != nil) _delegate = std::move(delegate);
  return self;
}

- (void)applicationDidFinishLaunching:(NSNotification*)notification {
  _delegate.didFinishLaunching();
  __weak VorrinApplicationDelegate* weakSelf = self;
  _reopening = vorrin::observeReopening([weakSelf] { [weakSelf reopen]; });
}

- (void)reopen {
  [NSApp activateIgnoringOtherApps:YES];
  _delegate.shouldHandleReopen(true);
}

- (BOOL)applicationShouldHandleReopen:(NSApplication*)application hasVisibleWindows:(BOOL)visible {
  return _delegate.shouldHandleReopen(visible);
}

- (NSMenu*)applicationDockMenu:(NSApplication*)application {
  NSMenu* menu = [[NSMenu alloc] init];
  [menu addItemWithTitle:@"Stop Both Macros" action:@selector(stopAll:) keyEquivalent:@""].target =
      self;
  return menu;
}

- (void)stopAll:(NSMenuItem*)sender {
  _delegate.stopAll();
}

- (BOOL)applicationShouldTerminateAfterLastWindowClosed:(NSApplication*)application {
  return _delegate.shouldTerminateAfterLastWindowClosed();
}

- (void)applicationWillTerminate:(NSNotification*)notification {
  _delegate.willTerminate();
}

- (BOOL)applicationSupportsSecureRestorableState:(NSApplication*)application {
  return YES;
}

@end

namespace vorrin {

struct Application::Native {
  VorrinApplicationDelegate* delegate = nil;
};

Application::Application(int& /*argumentCount*/, char** /*arguments*/)
    : native_(std::make_unique<Native>()) {
  // The menus are Vorrin's own: AppKit adds no second item for the full screen, and none for tabs,
  // whose bar would take height from the window's content.
  [NSUserDefaults.standardUserDefaults registerDefaults:@{@"NSFullScreenMenuItemEverywhere" : @NO}];
  NSWindow.allowsAutomaticWindowTabbing = NO;
  [NSApplication sharedApplication];
  [NSApp setActivationPolicy:NSApplicationActivationPolicyRegular];
}

Application::~Application() = default;

void Application::setDelegate(ApplicationDelegate delegate) {
  native_->delegate = [[VorrinApplicationDelegate alloc] initWithDelegate:std::move(delegate)];
  NSApp.delegate = native_->delegate;
}

int Application::run() {
  const bool isInterfaceTest = [NSProcessInfo.processInfo.arguments containsObject:@"--ui-test"];
  if (!isInterfaceTest && reopenRunningInstance()) return 0;
  [NSApp run];
  return 0;
}

void Application::terminate() {
  [NSApp terminate:nil];
}

void Application::loadIcon() {
  NSURL* icon = [NSBundle.mainBundle URLForResource:@"Vorrin" withExtension:@"icns"];
  if (icon == nil) return;
  NSImage* image = [[NSImage alloc] initWithContentsOfURL:icon];
  if (image != nil) NSApp.applicationIconImage = image;
}

}  // namespace vorrin
