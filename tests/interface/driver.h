#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/pop_up_button.h"
#include "platform/text_field.h"
#include "platform/window.h"

/// What tests do to windows and see of them, as a user does and sees it. The folders `qt` and
/// `appkit` define it, each for its toolkit, so that the same tests run on both.
namespace vorrin::driver {

/// Called once before the application object is made. `home` is a directory for this process alone.
void prepareEnvironment(const std::filesystem::path& home);
/// Called once when the application object was made.
void applicationWasMade();

/// Forgets what this process stored in the user's own domain, where that does not lie in the home
/// directory.
void forgetStoredSettings();

/// Serves events until `condition` holds; false when that takes longer than a few seconds.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);
/// Lets objects that are to be deleted later be deleted now.
void deleteWhatIsLeft();

// Windows

/// Gives the keyboard to a window that is shown.
void activate(const Window& window);
void hide(const Window& window);
/// Gives the content this size, also where the screen has no room for it; the window may hide.
void resize(const Window& window, Size size);
void minimise(const Window& window);
/// Takes a window off the screen, with its sheet, before its last value goes away.
void takeAway(const Window& window);
[[nodiscard]] bool isVisible(const Window& window);
[[nodiscard]] bool isMinimised(const Window& window);

// Controls

/// Clicks a control; a disabled one does nothing.
void click(const View& view);
/// Enters text where the keyboard is, in the window or its sheet, in place of what is selected.
void enter(const Window& window, const std::string& text);
/// Replaces the text of a field that hangs in a window.
void type(const TextField& field, const std::string& text);
/// Picks an item of a pop-up.
void choose(const PopUpButton& popUp, int item);
/// The items of a pop-up.
[[nodiscard]] std::vector<std::string> titles(const PopUpButton& popUp);
/// What a screen reader says of the control.
[[nodiscard]] std::string spokenName(const View& view);
/// Where layout puts the view, in the coordinates of `root`: what is seen of it, without the room
/// that a toolkit keeps around for shadows.
[[nodiscard]] Rect place(const View& view, const View& root);
[[nodiscard]] bool hasKeyboard(const TextField& field);
[[nodiscard]] std::string selectedText(const TextField& field);

// Sheets

enum class Key { enter, escape };

[[nodiscard]] bool hasSheet(const Window& window);
/// Presses and releases a key in the sheet of `window`, which takes it once it has the keyboard.
void pressInSheet(const Window& window, Key key);
/// Clicks the sheet's button of this title.
void answer(const Window& window, const std::string& title);
/// Message and informative text.
[[nodiscard]] std::vector<std::string> sheetTexts(const Window& window);
/// The buttons' titles, in the order of the question's answers.
[[nodiscard]] std::vector<std::string> sheetButtons(const Window& window);
/// The title of the button that Enter presses.
[[nodiscard]] std::string defaultSheetButton(const Window& window);
/// The sheet's editable field.
[[nodiscard]] TextField sheetField(const Window& window);

}  // namespace vorrin::driver
