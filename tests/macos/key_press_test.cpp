#include "platform/macos/widgets/key_press.h"

#include <gtest/gtest.h>

namespace vorrin {
namespace {

KeyPress command(const std::string& characters, const std::string& ignoringModifiers) {
  return {
      .command = true, .characters = characters, .charactersIgnoringModifiers = ignoringModifiers};
}

TEST(MacosKeyPress, command_keys_edit_as_an_edit_menu_would) {
  EXPECT_EQ(editingCommand(command("x", "x")), "cut:");
  EXPECT_EQ(editingCommand(command("c", "c")), "copy:");
  EXPECT_EQ(editingCommand(command("v", "v")), "paste:");
  EXPECT_EQ(editingCommand(command("A", "A")), "selectAll:");
  EXPECT_EQ(editingCommand(command("z", "z")), "undo:");
  EXPECT_EQ(editingCommand(command("q", "q")), "");
}

TEST(MacosKeyPress, shift_makes_undo_redo_and_takes_the_others_away) {
  KeyPress key = command("Z", "Z");
  key.shift = true;
  EXPECT_EQ(editingCommand(key), "redo:");
  key.characters = "c";
  EXPECT_EQ(editingCommand(key), "");
}

TEST(MacosKeyPress, keys_without_command_or_with_more_modifiers_edit_nothing) {
  KeyPress key = command("c", "c");
  key.controlOrOption = true;
  EXPECT_EQ(editingCommand(key), "");
  EXPECT_EQ(editingCommand({.characters = "c", .charactersIgnoringModifiers = "c"}), "");
}

TEST(MacosKeyPress, cyrillic_greek_and_hebrew_layouts_have_the_commands_of_their_latin_characters) {
  EXPECT_EQ(editingCommand(command("c", "\u0441")), "copy:");
  EXPECT_EQ(editingCommand(command("v", "\u03C9")), "paste:");
  EXPECT_EQ(editingCommand(command("a", "\u05E9")), "selectAll:");
}

TEST(MacosKeyPress, what_command_makes_of_a_key_counts_before_the_key_itself) {
  EXPECT_EQ(editingCommand(command("i", "c")), "") << "Dvorak with QWERTY commands";
  EXPECT_EQ(editingCommand(command("\u0441", "c")), "copy:");
}

TEST(MacosKeyPress, escape_and_command_period_cancel) {
  EXPECT_TRUE(isCancelKey({.keyCode = 53}));
  EXPECT_TRUE(isCancelKey(command(".", ".")));
  EXPECT_TRUE(isCancelKey(command(".", "\u044E")));
  EXPECT_FALSE(isCancelKey(command("c", "c")));
  EXPECT_FALSE(isCancelKey({.characters = ".", .charactersIgnoringModifiers = "."}));
  EXPECT_FALSE(isCancelKey({.keyCode = 53, .command = true}));
}

}  // namespace
}  // namespace vorrin
