#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/button.h"
#include "platform/pop_up_button.h"
#include "platform/stack_view.h"
#include "platform/text_field.h"
#include "platform/timer.h"
#include "platform/user_defaults.h"
#include "platform/window.h"
#include "settings/preset.h"
#include "settings/preset_store.h"

namespace vorrin {

/// The application's delegate: it owns the window and its controls, the settings domain and the
/// permission poll, and holds the operations behind every control. Per-macro lists have two
/// entries, index 0 for the keyboard macro and 1 for the mouse macro. The engine is the
/// program-wide one. Everything runs on the main thread.
class App : public std::enable_shared_from_this<App> {
 public:
  /// `arguments` are the process arguments. `interfaceCheck` is run instead of the normal start
  /// once the window is built, when the arguments hold "--ui-test"; it is expected to end the
  /// process.
  App(const std::vector<std::string>& arguments, std::function<void(App&)> interfaceCheck);

  App(const App&) = delete;
  App& operator=(const App&) = delete;
  ~App() = default;

  Window window;
  TextField status;
  std::vector<TextField> states;
  std::vector<TextField> fields;
  std::vector<PopUpButton> shortcuts;
  std::vector<Button> checks;
  std::vector<Button> buttons;
  PopUpButton output;
  std::optional<Timer> poll;
  bool settingsValid = true;
  TextField saveNotice;
  const std::string testSuite;
  TextField presetName;
  PopUpButton presetList;
  TextField presetNotice;

  /// The domain of settings and presets, opened on first use: the suite `testSuite` in the
  /// interface self-check, the user's own otherwise.
  const UserDefaults& defaults();
  /// The named presets in `defaults()`.
  const PresetStore& presetStore();

  // Lifecycle.
  void applicationDidFinishLaunching();
  /// Brings the window back in front; always true.
  bool applicationShouldHandleReopen(bool hasVisibleWindows);
  /// True: closing the window quits.
  [[nodiscard]] static bool applicationShouldTerminateAfterLastWindowClosed();
  static void applicationWillTerminate();

  // Actions of the controls.
  void runClicked(const Button& sender);
  void enableChanged(const Button& sender);
  static void stopAll();
  void fullScreen();
  /// Installs the keyboard listener unless there is one, asking for the permission if it is
  /// missing.
  void connect();
  /// Opens the place where the permission is given.
  static void settings();

  // Current settings.
  /// What the controls show, or nothing when that is no valid record.
  [[nodiscard]] std::optional<Preset> currentPreset() const;
  /// Stops both macros, then stores what the controls show, or says why it was refused or could not
  /// be stored; accepted settings apply to this run in either case.
  void autoSave();
  void controlTextDidChange(const TextField& field);
  void save();

  // Preset panel.
  /// Rebuilds the list from the store and selects `selected` if it is there, else the first.
  void reloadPresets(const std::optional<std::string>& selected);
  void savePreset();
  void loadPreset();
  void renamePreset();
  void deletePreset();

  /// Brings all changing texts, colours and enabled states and the status file in line with the
  /// engine and the system, and changes nothing else. Cheap, and the same again when nothing
  /// changed.
  void refresh();

  /// Gives `view` and everything inside it the terminal look.
  void theme(const View& view);

 private:
  using Operation = void (App::*)();

  [[nodiscard]] Action action(std::string_view selector, Operation operation);
  static TextField label(const std::string& text, bool bold = false);
  static StackView row(std::span<const View> views);
  static StackView card(std::span<const View> views);
  Button button(const std::string& title, std::string_view selector, Operation operation);
  PopUpButton popUp(std::span<const std::string> titles, int selected, const std::string& name);

  void buildMenu();
  void loadSettings();
  static void loadSettingsIntoEngine(const Preset& settings);
  void buildWindow();
  StackView buildContent();
  StackView headerRow();
  StackView macroCard(int macro);
  StackView macroTitleRow(int macro);
  StackView macroSettingsRow(int macro);
  StackView outputRow();
  StackView presetsCard();
  StackView permissionRow();
  void applyTheme();
  void installEngineCallbacks();
  void observeSystem();
  void followSurroundings();
  void start();

  void themeTextField(const TextField& field);
  void themeButton(const Button& button);

  void refreshMacro(int macro, bool ready);
  void refreshStatus(bool ready);
  [[nodiscard]] std::string startNotice() const;
  void acceptSettings(const Preset& preset);
  void refuseSettings();
  void showStorageNotice();
  /// The stored presets; nothing, with the reason in the notice, when they cannot be read.
  [[nodiscard]] std::optional<std::map<std::string, Preset>> readPresets();
  [[nodiscard]] std::optional<std::string> selectedPreset();
  void commitPreset(const Preset& preset, const std::string& name);
  void showPreset(const Preset& preset);
  void finishRename(const std::string& oldName, const std::string& typedName);
  void finishDelete(const std::string& name);

  bool interfaceTest_;
  std::function<void(App&)> interfaceCheck_;
  std::optional<UserDefaults> defaults_;
  std::optional<PresetStore> presetStore_;
  /// Why the stored settings could not be read at the start. What the window shows must not replace
  /// them then.
  StorageFailure unreadSettings_;
  std::shared_ptr<void> workspaceObserver_;
  TextField header_;
  TextField presetsHeading_;
  Button stopAllButton_;
};

}  // namespace vorrin
