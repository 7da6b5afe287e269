#import <AppKit/AppKit.h>

#include "bridge/program_engine.h"
#include "interface_test.h"
#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/appearance.h"
#include "platform/macos/widgets/view_native.h"
#include "platform/macos/widgets/window_native.h"
#include "ui/theme.h"

// What of the window and its menus only AppKit has.

namespace vorrin {
namespace {

using testing::ElementsAre;

class AppkitLaunch : public InterfaceTest {
 protected:
  [[nodiscard]] NSWindow* window() const { return app->window.native()->window; }
};

std::string described(NSMenuItem* item) {
  std::string keys;
  if ((item.keyEquivalentModifierMask & NSEventModifierFlagControl) != 0) keys += "Control+";
  if ((item.keyEquivalentModifierMask & NSEventModifierFlagCommand) != 0) keys += "Command+";
  return standardString(item.title) + " " + keys + standardString(item.keyEquivalent);
}

NSEvent* commandKey(NSWindow* window, NSString* characters, NSString* ignoringModifiers) {
  return [NSEvent keyEventWithType:NSEventTypeKeyDown
                          location:NSZeroPoint
                     modifierFlags:NSEventModifierFlagCommand
                         timestamp:NSProcessInfo.processInfo.systemUptime
                      windowNumber:window.windowNumber
                           context:nil
                        characters:characters
       charactersIgnoringModifiers:ignoringModifiers
                         isARepeat:NO
                           keyCode:0];
}

Color titleColor(const Button& button) {
  NSAttributedString* title = static_cast<NSButton*>(button.native()->view).attributedTitle;
  return colorOf([title attribute:NSForegroundColorAttributeName atIndex:0 effectiveRange:nil]);
}

TEST_F(AppkitLaunch, the_menus_hold_quit_and_full_screen_with_their_keys) {
  std::vector<std::string> items;
  for (NSMenuItem* menu in NSApp.mainMenu.itemArray) {
    for (NSMenuItem* item in menu.submenu.itemArray) {
      items.push_back(standardString(menu.submenu.title) + " > " + described(item));
    }
  }
  EXPECT_THAT(items, ElementsAre("Vorrin > Quit Vorrin Command+q",
                                 "View > Toggle Full Screen Control+Command+f"));
}

TEST_F(AppkitLaunch, the_window_is_dark_with_a_transparent_title_bar) {
  EXPECT_TRUE([window().appearance.name isEqualToString:NSAppearanceNameDarkAqua]);
  EXPECT_TRUE(window().titlebarAppearsTransparent);
  EXPECT_FALSE(window().releasedWhenClosed);
  EXPECT_EQ(window().contentMinSize.width, 580);
  EXPECT_EQ(window().contentMinSize.height, 700);
}

TEST_F(AppkitLaunch, buttons_have_the_round_bezel_and_pop_ups_hang_down) {
  auto* startButton = static_cast<NSButton*>(app->buttons[0].native()->view);
  EXPECT_EQ(startButton.bezelStyle, NSBezelStyleRounded);
  EXPECT_EQ(startButton.controlSize, NSControlSizeRegular);
  EXPECT_FALSE(static_cast<NSPopUpButton*>(app->output.native()->view).pullsDown);
}

TEST_F(AppkitLaunch, a_refused_interval_is_orange_while_it_is_typed) {
  type(app->fields[0], "abc");
  auto* field = static_cast<NSTextField*>(app->fields[0].native()->view);
  ASSERT_NE(field.currentEditor, nil);
  EXPECT_TRUE([field.currentEditor.textColor isEqual:field.textColor]);
  EXPECT_EQ(app->fields[0].textColor(), Color::systemOrange());
}

TEST_F(AppkitLaunch, command_a_selects_all_of_the_field_being_edited_on_a_cyrillic_layout_too) {
  type(app->presetName, "night");
  EXPECT_TRUE([window() performKeyEquivalent:commandKey(window(), @"a", @"\u0444")]);
  EXPECT_EQ(driver::selectedText(app->presetName), "night");
}

TEST_F(AppkitLaunch, command_period_cancels_a_question_whose_default_is_cancel) {
  savePreset("Night", *app->currentPreset());
  click(button("Delete"));
  [NSApp postEvent:commandKey(window().attachedSheet, @".", @".") atStart:NO];
  EXPECT_TRUE(waitFor([this] { return !hasSheet(); }));
  EXPECT_EQ(app->presetStore().all().value.size(), 1U);
}

TEST_F(AppkitLaunch, titles_have_the_tint_that_was_chosen_dimmer_while_disabled) {
  EXPECT_EQ(titleColor(button("Stop all · Esc")), hackerGreen);
  const Button load = button("Load");
  EXPECT_EQ(titleColor(load), Color::sRgb(0.77, 0.82, 0.79));
  load.setEnabled(false);
  EXPECT_LT(titleColor(load).alpha, 0.5);
  load.setEnabled(true);
  load.setTitle("Take");
  EXPECT_EQ(titleColor(load), Color::sRgb(0.77, 0.82, 0.79));
}

TEST_F(AppkitLaunch, a_field_is_as_dark_as_its_background) {
  auto* field = static_cast<NSTextField*>(app->presetName.native()->view);
  NSBitmapImageRep* picture = [field bitmapImageRepForCachingDisplayInRect:field.bounds];
  [field cacheDisplayInRect:field.bounds toBitmapImageRep:picture];
  const Color drawn = colorOf([picture colorAtX:picture.pixelsWide - picture.pixelsWide / 8
                                              y:picture.pixelsHigh / 2]);
  EXPECT_NEAR(drawn.red, 0.065, 0.02);
  EXPECT_NEAR(drawn.green, 0.065, 0.02);
  EXPECT_EQ(drawn.alpha, 1);
}

TEST_F(AppkitLaunch, there_are_no_tabs_and_no_second_item_for_the_full_screen) {
  EXPECT_FALSE(NSWindow.allowsAutomaticWindowTabbing);
  NSUserDefaults* defaults = NSUserDefaults.standardUserDefaults;
  EXPECT_NE([defaults objectForKey:@"NSFullScreenMenuItemEverywhere"], nil);
  EXPECT_FALSE([defaults boolForKey:@"NSFullScreenMenuItemEverywhere"]);
}

TEST_F(AppkitLaunch, a_sheet_is_as_dark_as_its_window) {
  savePreset("Night", *app->currentPreset());
  click(button("Delete"));
  EXPECT_TRUE([window().attachedSheet.appearance.name isEqualToString:NSAppearanceNameDarkAqua]);
  answer("Cancel");
}

TEST_F(AppkitLaunch, an_open_question_does_not_hold_up_quitting) {
  savePreset("Night", *app->currentPreset());
  click(button("Delete"));
  EXPECT_FALSE(window().attachedSheet.preventsApplicationTerminationWhenModal);
  answer("Cancel");
}

}  // namespace
}  // namespace vorrin
