#pragma once

#include <string>
#include <string_view>

namespace vorrin {

/// A key as a window gets it. With the Command key down, layouts that are not Latin give a Latin
/// `characters`, and their own letters `charactersIgnoringModifiers`.
struct KeyPress {
  unsigned short keyCode = 0;
  bool command = false;
  bool shift = false;
  bool controlOrOption = false;
  std::string characters{};
  std::string charactersIgnoringModifiers{};
};

/// The selector of the command that an Edit menu would have for this key; empty when it has none.
std::string_view editingCommand(const KeyPress& key);

/// Whether the key takes a question back: Escape, or Command with a full stop.
bool isCancelKey(const KeyPress& key);

}  // namespace vorrin
