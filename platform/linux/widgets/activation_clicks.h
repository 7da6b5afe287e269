#pragma once

#include <QAbstractNativeEventFilter>
#include <QGuiApplication>
#include <QObject>
#include <chrono>

class QMouseEvent;

namespace vorrin {

/// Keeps the clicks from the windows that do no more than bring the program to the front: the
/// user's, and those that a macro had on their way when its window came to the front, of which
/// there may be tens. A press counts once the program has had the keyboard for a moment.
class ActivationClicks : public QObject, private QAbstractNativeEventFilter {
 public:
  explicit ActivationClicks(QGuiApplication& application);

 private:
  bool eventFilter(QObject* object, QEvent* event) override;
  /// The widget library tells of the keyboard's going 100 ms late on X11.
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  void setActive(bool isActive);
  [[nodiscard]] bool isTooEarly(const QMouseEvent& press) const;

  bool isActive_ = false;
  std::chrono::steady_clock::time_point activeSince_;
  Qt::MouseButtons swallowed_;
};

}  // namespace vorrin
