#include "platform/macos/widgets/key_press_native.h"

#include "platform/macos/foundation/ns_string.h"

namespace vorrin {

KeyPress keyPressOf(NSEvent* event) {
  const NSEventModifierFlags modifiers = event.modifierFlags;
  return {.keyCode = event.keyCode,
          .command = (modifiers & NSEventModifierFlagCommand) != 0,
          .shift = (modifiers & NSEventModifierFlagShift) != 0,
          .controlOrOption =
              (modifiers & (NSEventModifierFlagControl | NSEventModifierFlagOption)) != 0,
          .characters = standardString(event.characters),
          .charactersIgnoringModifiers = standardString(event.charactersIgnoringModifiers)};
}

}  // namespace vorrin
