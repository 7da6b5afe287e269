#pragma once

#include <memory>

#include "settings/preset.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/program.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"

namespace vorrin::bench {

/// A home for the programs measured, which is this process's own home too, so that both use the
/// same settings.
class SharedHome : public x11_tests::Home {
 public:
  SharedHome();
};

/// A private X server with a window manager and a user.
struct Stage {
  x11_tests::Desktop desktop;
  SharedHome home;
  x11_tests::User user{desktop.display()};
};

/// Starts Vorrin on the stage; returns at once.
std::unique_ptr<x11_tests::Program> startVorrin(const Stage& stage);

/// Starts Vorrin with these settings and returns when it is connected and in front; throws
/// std::runtime_error when that does not happen.
std::unique_ptr<x11_tests::Program> startConnectedVorrin(const Stage& stage,
                                                         const Preset& settings);

/// Returns when Vorrin would take up this shortcut: it learns a moment after the window manager
/// that its own window is no longer in front. Throws std::runtime_error when that does not happen.
void waitForShortcut(const Stage& stage, std::uint16_t virtualKey);

/// The macOS key codes that the benchmark presses.
inline constexpr std::uint16_t tabKey = 48;
inline constexpr std::uint16_t escapeKey = 53;

/// Stores so many presets, in the place of those that are stored.
void storePresets(int count);

/// The start settings of the program with this interval for the click macro.
Preset clickingEvery(double seconds);

}  // namespace vorrin::bench
