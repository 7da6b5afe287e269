#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "driver.h"
#include "platform/button.h"
#include "platform/view.h"
#include "private_home.h"
#include "ui/app.h"

namespace vorrin {

using driver::choose;
using driver::click;
using driver::type;
using driver::waitFor;

/// The real window, worked as a user works it, with the scripted input services behind it and a
/// home directory of its own.
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

  /// Enters text where the keyboard is.
  void enter(const std::string& text) const { driver::enter(app->window, text); }

  /// Whether a question waits for an answer.
  [[nodiscard]] bool hasSheet() const { return driver::hasSheet(app->window); }
  void answer(const std::string& title) const { driver::answer(app->window, title); }

  /// Stores a preset under `name` without the window.
  void savePreset(const std::string& name, const Preset& preset);
  static void store(const std::vector<std::pair<std::string, DefaultsObject>>& values);
  [[nodiscard]] std::optional<DefaultsObject> stored(const std::string& key);

  PrivateHome home;
  std::shared_ptr<App> app;

 private:
  void close();
};

}  // namespace vorrin
