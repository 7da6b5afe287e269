#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QPushButton>
#include <QString>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/button.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/sheet.h"
#include "platform/view.h"
#include "private_home.h"
#include "ui/app.h"

namespace vorrin {

/// The real window on the screen of Qt's offscreen platform, worked as a user works it, with the
/// scripted input services behind it and a home directory of its own.
class InterfaceTest : public testing::Test {
 protected:
  InterfaceTest();
  ~InterfaceTest() override;

  /// Starts the program anew, as after a restart: with what was stored, on the system as it is now.
  void launch();

  /// The views inside `root`, the outer before the inner, each before those after it.
  [[nodiscard]] std::vector<View> allViews() const;
  [[nodiscard]] std::vector<View> allControls() const;
  /// The push button with this title.
  [[nodiscard]] Button button(const std::string& title) const;
  /// The label with this text.
  [[nodiscard]] TextField label(const std::string& text) const;

  /// Clicks in the middle of it, wherever that click then goes.
  static void click(const View& view);
  static void click(QWidget& widget);
  /// Presses and releases a key in the sheet, or in the window when there is none.
  void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const;
  /// Enters text where the keyboard is.
  static void enter(const std::string& text);
  /// Replaces the text of a field.
  void type(const TextField& field, const std::string& text) const;
  /// Opens a pop-up and clicks one of its items.
  static void choose(const PopUpButton& popUp, int item);

  /// The sheet that waits for an answer, null when there is none.
  [[nodiscard]] Sheet* sheet() const;
  [[nodiscard]] QPushButton* sheetButton(const std::string& title) const;
  /// Message and informative text of the sheet.
  [[nodiscard]] std::vector<std::string> sheetTexts() const;
  [[nodiscard]] std::vector<std::string> sheetButtons() const;
  void answer(const std::string& title) const;

  /// Stores a preset under `name` without the window.
  void savePreset(const std::string& name, const Preset& preset);
  [[nodiscard]] std::optional<DefaultsObject> stored(const std::string& key);

  PrivateHome home;
  std::shared_ptr<App> app;

 private:
  static void forgetEngine();
  void close();
};

/// Serves events until `condition` holds; false when that takes longer than a few seconds.
[[nodiscard]] bool waitFor(const std::function<bool()>& condition);

/// Lets objects that are to be deleted later be deleted now.
void deleteWhatIsLeft();

}  // namespace vorrin
