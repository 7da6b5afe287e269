#import <AppKit/AppKit.h>

#include "platform/application.h"
#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/action_target.h"

namespace vorrin {

namespace {

NSMenuItem* nsMenuItem(const MenuItem& item) {
  const KeyEquivalent& keys = item.keyEquivalent;
  NSString* key = keys.key == 0 ? @"" : nsString(std::string_view(&keys.key, 1));
  NSMenuItem* native = [[NSMenuItem alloc] initWithTitle:nsString(item.title)
                                                  action:@selector(perform:)
                                           keyEquivalent:key];
  native.keyEquivalentModifierMask =
      NSEventModifierFlagCommand | (keys.control ? NSEventModifierFlagControl : 0);
  VorrinActionTarget* target = [[VorrinActionTarget alloc] initWithAction:item.action];
  native.target = target;
  native.representedObject = target;  // an item does not keep its target alive
  return native;
}

NSMenuItem* nsSubmenuItem(const Menu& menu) {
  NSMenuItem* native = [[NSMenuItem alloc] init];
  native.submenu = [[NSMenu alloc] initWithTitle:nsString(menu.title)];
  for (const MenuItem& item : menu.items) [native.submenu addItem:nsMenuItem(item)];
  return native;
}

}  // namespace

void Application::setMainMenu(const std::vector<Menu>& menus) {
  NSMenu* mainMenu = [[NSMenu alloc] init];
  for (const Menu& menu : menus) [mainMenu addItem:nsSubmenuItem(menu)];
  NSApp.mainMenu = mainMenu;
}

}  // namespace vorrin
