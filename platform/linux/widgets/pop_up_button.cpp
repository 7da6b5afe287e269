#include "platform/pop_up_button.h"

#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/pop_up_widget.h"

namespace vorrin {

PopUpButton PopUpButton::make(Action action) {
  return PopUpButton(nativeOf(*new PopUpWidget(std::move(action))));
}

void PopUpButton::removeAllItems() const {
  widgetOf<PopUpWidget>(*this).clear();
}

void PopUpButton::addItems(std::span<const std::string> titles) const {
  auto& popUp = widgetOf<PopUpWidget>(*this);
  QStringList native;
  for (const std::string& title : titles) native.append(nativeText(title));
  // One of a fixed width would else measure each of a thousand titles, and that several times.
  if (popUp.minimumWidth() == popUp.maximumWidth()) {
    popUp.setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  }
  popUp.addItems(native);
  popUp.updateGeometry();
}

int PopUpButton::indexOfSelectedItem() const {
  return widgetOf<PopUpWidget>(*this).currentIndex();
}

std::string PopUpButton::titleOfSelectedItem() const {
  return widgetOf<PopUpWidget>(*this).currentText().toStdString();
}

void PopUpButton::selectItem(int index) const {
  auto& popUp = widgetOf<PopUpWidget>(*this);
  precondition(index >= 0 && index < popUp.count(), "the item to select is one of the pop-up's");
  popUp.setCurrentIndex(index);
}

void PopUpButton::selectItem(const std::string& title) const {
  auto& popUp = widgetOf<PopUpWidget>(*this);
  const int index = popUp.findText(nativeText(title));
  if (index >= 0) popUp.setCurrentIndex(index);
}

}  // namespace vorrin
