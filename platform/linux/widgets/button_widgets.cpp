#include "platform/linux/widgets/button_widgets.h"

#include <QKeyEvent>

namespace vorrin {

void NativeButton::perform(QWidget& self) const {
  const auto sender = Button::from(viewOf(self));
  const auto operation = action.perform;
  if (sender && operation) operation(*sender);
}

template <class Base>
TitledButton<Base>::TitledButton(ButtonKind buttonKind, const QString& title, Action buttonAction)
    : NativeButton(buttonKind, std::move(buttonAction)) {
  TitledButton::setTitle(title);
  this->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  this->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(this, &QAbstractButton::clicked, this, [this] { perform(*this); });
}

template <class Base>
void TitledButton<Base>::setTitle(const QString& title) {
  // An ampersand would underline the letter after it.
  this->setText(QString(title).replace(QLatin1Char('&'), QLatin1String("&&")));
}

template <class Base>
QString TitledButton<Base>::shownText() const {
  return this->text().replace(QLatin1String("&&"), QLatin1String("&"));
}

template <class Base>
std::string_view TitledButton<Base>::kindName() const {
  return kind == ButtonKind::checkbox ? "Checkbox" : "Button";
}

template <class Base>
void TitledButton<Base>::keyPressEvent(QKeyEvent* event) {
  if (event->key() != Qt::Key_Return && event->key() != Qt::Key_Enter) {
    Base::keyPressEvent(event);
    return;
  }
  event->accept();
  if (!event->isAutoRepeat()) this->click();
}

template class TitledButton<QPushButton>;
template class TitledButton<QCheckBox>;

}  // namespace vorrin
