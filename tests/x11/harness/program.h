#pragma once

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "tests/x11/harness/process.h"

namespace vorrin::x11_tests {

/// A home directory of its own for a program under test, removed with everything in it.
class Home {
 public:
  Home();
  ~Home();
  Home(const Home&) = delete;
  Home& operator=(const Home&) = delete;

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// What leads a program to this place, and away from the session that the test runs in.
  [[nodiscard]] Environment environment() const;

 private:
  std::filesystem::path path_;
};

/// Vorrin, running beside the test with `home` as its home directory.
class Program {
 public:
  Program(const std::string& display, const Home& home);

  /// The content of its status file; nothing while there is none.
  [[nodiscard]] std::optional<std::string> status() const;

  /// Waits until the status file holds exactly these flags.
  [[nodiscard]] bool waitForStatus(const std::string& flags) const;

  /// Waits until it listens to the keyboard, or until it may and cannot.
  [[nodiscard]] bool waitUntilReady() const {
    return waitForStatus("accessibility=true eventTap=true ready=true");
  }

  [[nodiscard]] bool waitUntilUnavailable() const {
    return waitForStatus("accessibility=true eventTap=false ready=false");
  }

  Process& process() { return process_; }

 private:
  std::filesystem::path statusFile_;
  Process process_;
};

}  // namespace vorrin::x11_tests
