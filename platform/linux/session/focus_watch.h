#pragma once

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <functional>

namespace vorrin {

/// Learns at once, on X11, that the keyboard went from this program's windows to another program's.
/// The widget library holds that back for 100 ms, in case another of its own windows takes it.
/// Where the keyboard is with nobody or with the window manager, as while a sheet closes, the
/// library's word is waited for. Knows nothing on other systems of windows.
class FocusWatch : public QObject, private QAbstractNativeEventFilter {
 public:
  /// A child of the application. `changed` is called from the main loop after each change of
  /// `isFocusElsewhere`.
  explicit FocusWatch(std::function<void()> changed);

  [[nodiscard]] bool isFocusElsewhere() const { return isFocusElsewhere_; }

 private:
  // The signature and its type are the widget library's.
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  void setFocusElsewhere(bool isElsewhere);

  std::function<void()> changed_;
  bool isFocusElsewhere_ = false;
};

}  // namespace vorrin
