#pragma once

#include <map>
#include <string>
#include <vector>

#include "interface_test.h"

namespace vorrin {

/// The panel of named presets.
class PresetsTest : public InterfaceTest {
 protected:
  using Key = driver::Key;

  /// Matches an entry of the store.
  static auto entry(const std::string& name, const Preset& preset) {
    return testing::Pair(name, preset);
  }

  /// What the window's settings are now.
  [[nodiscard]] Preset preset() const { return *app->currentPreset(); }
  /// What is in the store.
  [[nodiscard]] std::map<std::string, Preset> presets() const {
    return app->presetStore().all().value;
  }

  [[nodiscard]] std::vector<std::string> list() const { return driver::titles(app->presetList); }

  /// A preset that differs from the start values in everything.
  static Preset other() {
    return {.intervals = {2, 0.05}, .keys = {97, 98}, .digit = 4, .enabled = {false, true}};
  }

  void save(const std::string& name) const {
    type(app->presetName, name);
    click(button("Save preset"));
  }

  /// The question's field for the new name, once it has the keyboard.
  [[nodiscard]] TextField nameInSheet() const {
    const TextField field = driver::sheetField(app->window);
    EXPECT_TRUE(waitFor([&field] { return driver::hasKeyboard(field); }));
    return field;
  }

  /// Answers the question by keyboard, and waits for its end.
  void answerWith(Key key) const {
    driver::pressInSheet(app->window, key);
    EXPECT_TRUE(waitFor([this] { return !hasSheet(); }));
  }
};

}  // namespace vorrin
