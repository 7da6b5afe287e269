#pragma once

#include <QPointer>
#include <functional>
#include <optional>

#include "platform/alert.h"
#include "platform/linux/widgets/scroll_view.h"

class QPushButton;

namespace vorrin {

class PlaneWidget;
class WindowWidget;

/// A question inside a window, over its dimmed content, which takes no input until it is answered.
/// The main menu stays at hand. It goes away with its window, and answers nothing then.
class Sheet : public ScrollView {
 public:
  /// Escape stands for the button “Cancel” or “Close”. Without one it does nothing.
  Sheet(const Alert& alert, WindowWidget& window, std::function<void(int)> completion);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addTexts(const Alert& alert);
  void addAccessory(const Alert& alert);
  void addButtons(const Alert& alert);
  /// Takes the sheet away and gives the keyboard back, then tells `index`. Only the first answer
  /// counts.
  void answer(int index);

  WindowWidget& window_;
  std::function<void(int)> completion_;
  std::optional<TextField> accessory_;
  PlaneWidget* const panel_;
  QPushButton* default_ = nullptr;
  QPushButton* escape_ = nullptr;
  /// What had the keyboard before.
  QPointer<QWidget> formerFocus_;
};

/// Shows a sheet on `window` and returns at once. A window has at most one; when it has, nothing
/// happens and `completion` is never called.
void presentSheet(const Alert& alert, WindowWidget& window, std::function<void(int)> completion);

}  // namespace vorrin
