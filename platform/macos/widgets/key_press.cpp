#include "platform/macos/widgets/key_press.h"

#include <array>
#include <utility>

namespace vorrin {

namespace {

constexpr unsigned short escapeKeyCode = 53;

constexpr std::array<std::pair<char, std::string_view>, 5> commands{
    {{'x', "cut:"}, {'c', "copy:"}, {'v', "paste:"}, {'a', "selectAll:"}, {'z', "undo:"}}};

/// The ASCII character of the key, letters small; NUL when it has none. A layout with Latin letters
/// for Command alone (Dvorak with QWERTY commands) means those of `characters` too.
char commandCharacter(const KeyPress& key) {
  for (const std::string& text : {key.characters, key.charactersIgnoringModifiers}) {
    if (text.size() != 1) continue;
    const char character = text.front();
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + 'a' - 'A')
                                                : character;
  }
  return '\0';
}

}  // namespace

std::string_view editingCommand(const KeyPress& key) {
  if (!key.command || key.controlOrOption) return {};
  const char character = commandCharacter(key);
  if (key.shift) return character == 'z' ? "redo:" : "";
  for (const auto& [letter, selector] : commands) {
    if (letter == character) return selector;
  }
  return {};
}

bool isCancelKey(const KeyPress& key) {
  if (key.shift || key.controlOrOption) return false;
  return key.command ? commandCharacter(key) == '.' : key.keyCode == escapeKeyCode;
}

}  // namespace vorrin
