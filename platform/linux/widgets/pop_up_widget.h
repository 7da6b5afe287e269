#pragma once

#include <QComboBox>

#include "platform/linux/widgets/button_widgets.h"

namespace vorrin {

/// A pop-up menu: as wide as its widest title if there is room, else its title is shortened.
class PopUpWidget : public QComboBox, public NativeButton {
 public:
  explicit PopUpWidget(Action popUpAction);

  [[nodiscard]] std::string_view kindName() const override { return "Pop-up"; }
  [[nodiscard]] QString shownText() const override { return currentText(); }
  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;
  void showPopup() override;
  void hidePopup() override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;

 private:
  [[nodiscard]] int widestTitle() const;
};

}  // namespace vorrin
