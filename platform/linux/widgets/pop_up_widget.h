#pragma once

#include <QComboBox>

#include "platform/linux/widgets/button_widgets.h"

namespace vorrin {

/// A pop-up menu: as wide as its widest title, unless it has another width; then titles are
/// shortened.
class PopUpWidget : public QComboBox, public NativeButton {
 public:
  explicit PopUpWidget(Action popUpAction);

  [[nodiscard]] std::string_view kindName() const override { return "Pop-up"; }
  [[nodiscard]] QString shownText() const override { return currentText(); }
  void showPopup() override;
  void hidePopup() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
};

}  // namespace vorrin
