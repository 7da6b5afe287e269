#include "platform/pop_up_button.h"

#include "platform/fatal_error.h"
#include "platform/macos/foundation/ns_string.h"
#include "platform/macos/widgets/action_target.h"
#include "platform/macos/widgets/title_color.h"
#include "platform/macos/widgets/view_native.h"

namespace vorrin {

namespace {

NSPopUpButton* nsPopUpButton(const PopUpButton& button) {
  return nsViewAs<NSPopUpButton>(button);
}

// Lower than what holds a window's size, so that a long title is cut off and not the row.
const NSLayoutPriority titleResistance = NSLayoutPriorityWindowSizeStayPut - 10;

}  // namespace

PopUpButton PopUpButton::make(Action action) {
  NSPopUpButton* button = [[VorrinPopUpButton alloc] initWithFrame:NSZeroRect pullsDown:NO];
  [button setContentCompressionResistancePriority:titleResistance
                                   forOrientation:NSLayoutConstraintOrientationHorizontal];
  connectAction(button, action);
  return PopUpButton(nativeOf(button));
}

void PopUpButton::removeAllItems() const {
  [nsPopUpButton(*this) removeAllItems];
}

void PopUpButton::addItems(std::span<const std::string> titles) const {
  NSPopUpButton* button = nsPopUpButton(*this);
  // By way of the menu: the button's own method takes away an older item of the same title.
  for (const std::string& title : titles) {
    [button.menu addItemWithTitle:nsString(title) action:nil keyEquivalent:@""];
  }
  if (button.indexOfSelectedItem < 0 && button.numberOfItems > 0) [button selectItemAtIndex:0];
}

int PopUpButton::indexOfSelectedItem() const {
  return static_cast<int>(nsPopUpButton(*this).indexOfSelectedItem);
}

std::string PopUpButton::titleOfSelectedItem() const {
  return standardString(nsPopUpButton(*this).titleOfSelectedItem);
}

void PopUpButton::selectItem(int index) const {
  NSPopUpButton* button = nsPopUpButton(*this);
  precondition(index >= 0 && index < button.numberOfItems, "the pop-up has an item of this index");
  [button selectItemAtIndex:index];
}

void PopUpButton::selectItem(const std::string& title) const {
  NSPopUpButton* button = nsPopUpButton(*this);
  const NSInteger index = [button indexOfItemWithTitle:nsString(title)];
  if (index >= 0) [button selectItemAtIndex:index];
}

}  // namespace vorrin
