#pragma once

#include <QCheckBox>
#include <QPushButton>

#include "platform/button.h"
#include "platform/linux/widgets/native_view.h"

namespace vorrin {

/// What push buttons, check boxes and pop-ups have in common.
class NativeButton : public NativeView {
 public:
  NativeButton(ButtonKind buttonKind, Action buttonAction)
      : kind(buttonKind), action(std::move(buttonAction)) {}

  /// Performs the action with `self`, the widget that this object is, as its sender.
  void perform(QWidget& self) const;

  /// Of buttons that have one.
  virtual void setTitle(const QString& /*title*/) {}

  const ButtonKind kind;
  const Action action;
  int tag = 0;
};

/// A push button or a check box. `Base` is the Qt class.
template <class Base>
class TitledButton : public Base, public NativeButton {
 public:
  TitledButton(ButtonKind buttonKind, const QString& title, Action buttonAction);

  void setTitle(const QString& title) override;
  [[nodiscard]] QString shownText() const override;
  [[nodiscard]] std::string_view kindName() const override;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
};

using PushButtonWidget = TitledButton<QPushButton>;
using CheckBoxWidget = TitledButton<QCheckBox>;

}  // namespace vorrin
