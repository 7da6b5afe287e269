#include "platform/stack_view.h"

#include <QBoxLayout>

#include "platform/linux/widgets/label_widget.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/palette.h"
#include "platform/linux/widgets/plane_widget.h"

namespace vorrin {

namespace {

QBoxLayout& layoutOf(const StackView& stack) {
  auto* layout = dynamic_cast<QBoxLayout*>(widgetOf(stack).layout());
  precondition(layout != nullptr, "the view is a stack");
  return *layout;
}

}  // namespace

StackView StackView::make(Orientation orientation, double spacing, std::span<const View> views) {
  auto* widget = new PlaneWidget("Stack");
  const bool isRow = orientation == Orientation::horizontal;
  auto* layout = new QBoxLayout(isRow ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, widget);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(pixels(spacing));
  StackView stack(nativeOf(*widget));
  for (const View& view : views) stack.addArrangedSubview(view);
  return stack;
}

void StackView::addArrangedSubview(const View& view) const {
  QBoxLayout& layout = layoutOf(*this);
  QWidget& widget = widgetOf(view);
  const bool isRow = layout.direction() == QBoxLayout::LeftToRight;
  auto* label = dynamic_cast<LabelWidget*>(&widget);
  if (label != nullptr) label->setWraps(!isRow);
  // In a column a label has the whole width to wrap in; everything else keeps its own.
  const Qt::Alignment inColumn = label != nullptr ? Qt::Alignment() : Qt::AlignLeft;
  layout.addWidget(&widget, 0, isRow ? Qt::AlignVCenter : inColumn);
  if (widgetOf(*this).isVisible()) widget.show();
}

void StackView::setEdgeInsets(double inset) const {
  const int room = pixels(inset);
  layoutOf(*this).setContentsMargins(room, room, room, room);
}

void StackView::setLayer(const Color& background, double cornerRadius, double borderWidth,
                         const Color& border) const {
  widgetOf<PlaneWidget>(*this).setLayer(
      {nativeColor(background), cornerRadius, borderWidth, nativeColor(border)});
}

}  // namespace vorrin
