#pragma once

#include <QDialog>
#include <functional>
#include <optional>
#include <vector>

#include "platform/alert.h"

namespace vorrin {

class LabelWidget;
class WindowWidget;

/// A question in front of a window, which takes no input until it is answered.
class Sheet : public QDialog {
 public:
  /// `escapeAnswer`: index of the button that Escape and the sheet's own close button stand for.
  /// Without one they do nothing.
  Sheet(const Alert& alert, std::optional<int> escapeAnswer, QWidget& window,
        std::function<void(int)> completion);

  void reject() override;

 private:
  void addTexts(const Alert& alert);
  void addButtons(const std::vector<std::string>& titles);
  /// Takes the sheet away, then tells `index`. Only the first answer counts.
  void answer(int index);

  const std::optional<int> escapeAnswer_;
  std::function<void(int)> completion_;
  std::optional<TextField> accessory_;
  std::vector<LabelWidget*> texts_;
};

/// Shows a sheet on `window` and returns at once. A window has at most one; when it has, nothing
/// happens and `completion` is never called.
void presentSheet(const Alert& alert, std::optional<int> escapeAnswer, WindowWidget& window,
                  std::function<void(int)> completion);

}  // namespace vorrin
