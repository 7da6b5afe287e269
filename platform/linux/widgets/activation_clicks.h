#pragma once

#include <QGuiApplication>
#include <QObject>
#include <chrono>
#include <optional>

class QMouseEvent;

namespace vorrin {

/// Keeps the clicks from the windows that do no more than bring the program to the front: the
/// user's, and those that a macro had on their way when its window came to the front, of which
/// there may be tens. A press counts once the program has had the keyboard for a moment.
class ActivationClicks : public QObject {
 public:
  explicit ActivationClicks(QGuiApplication& application);

 private:
  bool eventFilter(QObject* object, QEvent* event) override;
  [[nodiscard]] bool isTooEarly(const QMouseEvent& press) const;

  /// Nothing while another program has the keyboard.
  std::optional<std::chrono::steady_clock::time_point> activeSince_;
  Qt::MouseButtons swallowed_;
};

}  // namespace vorrin
