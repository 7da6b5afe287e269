#pragma once

namespace vorrin {

/// Prepares the start of the widget library and watches over it. Lives from before the library's
/// application object is made until that is done.
class LaunchEnvironment {
 public:
  /// Without a display, the start ends the process with status 1 and one line on standard error
  /// when it `needsDisplay`; else the library draws into memory only.
  explicit LaunchEnvironment(bool needsDisplay);
  ~LaunchEnvironment();
  LaunchEnvironment(const LaunchEnvironment&) = delete;
  LaunchEnvironment& operator=(const LaunchEnvironment&) = delete;
};

}  // namespace vorrin
