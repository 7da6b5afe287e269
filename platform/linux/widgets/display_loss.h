#pragma once

#include <QSocketNotifier>
#include <functional>
#include <memory>

namespace vorrin {

/// Ends the process when its X server is gone, with one line on standard error and status 1. The
/// widget library does so itself, but without telling the application. Does nothing on other
/// systems of windows.
class DisplayLoss {
 public:
  /// `lost` is called before the process ends. The application object must exist and outlive this.
  explicit DisplayLoss(std::function<void()> lost);

 private:
  std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace vorrin
