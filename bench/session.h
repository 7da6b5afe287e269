#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "settings/preset.h"
#include "tests/x11/harness/client.h"
#include "tests/x11/harness/process.h"
#include "tests/x11/harness/server.h"
#include "tests/x11/harness/user.h"

namespace vorrin::bench {

/// A folder of its own that is home and configuration of the programs measured; removed with this.
class PrivateHome {
 public:
  PrivateHome();
  ~PrivateHome();
  PrivateHome(const PrivateHome&) = delete;
  PrivateHome& operator=(const PrivateHome&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }
  /// What Vorrin's status file says now, empty without one.
  [[nodiscard]] std::string status() const;

 private:
  std::filesystem::path path_;
};

/// A private X server with a window manager and a user.
struct Stage {
  x11_tests::Desktop desktop;
  PrivateHome home;
  x11_tests::User user{desktop.display()};
};

/// Starts Vorrin on the stage; returns at once.
std::unique_ptr<x11_tests::Process> startVorrin(const Stage& stage);

/// Starts Vorrin with these settings and returns when it is connected.
std::unique_ptr<x11_tests::Process> startConnectedVorrin(const Stage& stage,
                                                         const Preset& settings);

/// The macOS key codes that the benchmark presses.
inline constexpr std::uint16_t tabKey = 48;
inline constexpr std::uint16_t escapeKey = 53;

/// The start settings of the program with this interval for the click macro.
Preset clickingEvery(double seconds);

}  // namespace vorrin::bench
