#include "platform/linux/widgets/dark_style.h"

#include <QPainter>
#include <QStyleFactory>
#include <QStyleOption>
#include <algorithm>
#include <array>

#include "platform/linux/widgets/menu_drawing.h"

namespace vorrin {

namespace {

constexpr int controlHeight = 24;
constexpr int titleInset = 12;
constexpr int textInset = 10;
constexpr int popUpArrowRoom = 24;
constexpr int popUpTitleRoom = 40;
constexpr int smallestPopUp = 64;
constexpr int checkSize = 16;
constexpr int checkRoom = 20;
constexpr int checkHeight = 22;
constexpr int checkTitleGap = 6;
constexpr double bezelRadius = 6;
constexpr double checkRadius = 4;
constexpr double ringWidth = 2;

QColor mixed(const QColor& base, const QColor& other, double share) {
  const auto part = static_cast<float>(share);
  return QColor::fromRgbF(base.redF() * (1 - part) + other.redF() * part,
                          base.greenF() * (1 - part) + other.greenF() * part,
                          base.blueF() * (1 - part) + other.blueF() * part, base.alphaF());
}

/// Whether the user works by the keyboard and is at this control.
bool showsFocus(const QStyleOption& option) {
  return has(option, QStyle::State_HasFocus) && has(option, QStyle::State_KeyboardFocusChange);
}

/// The bezel's fill by what the pointer and the user do with it.
QColor bezelFill(const QStyleOption& option, const QColor& bezel) {
  if (!has(option, QStyle::State_Enabled)) return mixed(bezel, Qt::black, 0.4);
  if (has(option, QStyle::State_Sunken)) return mixed(bezel, Qt::white, 0.16);
  if (has(option, QStyle::State_MouseOver)) return mixed(bezel, Qt::white, 0.07);
  return bezel;
}

QPen bezelEdge(const QStyleOption& option, bool isRinged) {
  if (isRinged) return {accent(), ringWidth};
  return {white(has(option, QStyle::State_Enabled) ? 0.18 : 0.09), 1.0};
}

void drawPushButton(const QStyleOptionButton& button, QPainter& painter) {
  const bool isDefault = (button.features & QStyleOptionButton::DefaultButton) != 0;
  QColor bezel = button.palette.color(QPalette::Button);
  if (isDefault) bezel = mixed(bezel, accent(), 0.28);
  QPen edge = bezelEdge(button, showsFocus(button));
  if (isDefault && !showsFocus(button)) edge.setColor(mixed(bezel, accent(), 0.45));
  drawBezel(painter, button.rect, bezelRadius, bezelFill(button, bezel), edge);
  painter.setPen(button.palette.color(QPalette::ButtonText));
  painter.drawText(button.rect, Qt::AlignCenter | Qt::TextShowMnemonic, button.text);
}

void drawCheckBox(const QStyleOptionButton& check, QPainter& painter) {
  const int top = check.rect.y() + (check.rect.height() - checkSize) / 2;
  const QRect box(check.rect.x(), top, checkSize, checkSize);
  const QColor tint = check.palette.color(QPalette::WindowText);
  const bool isOn = has(check, QStyle::State_On);
  const QColor bezel = check.palette.color(QPalette::Button);
  drawBezel(painter, box, checkRadius,
            bezelFill(check, isOn ? mixed(bezel, accent(), 0.28) : bezel),
            bezelEdge(check, showsFocus(check)));
  if (isOn) drawCheckMark(painter, box, has(check, QStyle::State_Enabled) ? accent() : tint);
  painter.setPen(tint);
  painter.drawText(check.rect.adjusted(checkRoom + checkTitleGap, 0, 0, 0),
                   Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, check.text);
}

/// Two small arrow heads, one above the other.
void drawPopUpArrows(QPainter& painter, const QRect& rect, const QColor& color) {
  constexpr double half = 3.5;
  constexpr double rise = 3;
  constexpr double gap = 2;
  const QPointF middle = QRectF(rect).center();
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(color, 1.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  for (const double side : {-1.0, 1.0}) {
    const std::array<QPointF, 3> corners = {middle + QPointF(-half, side * gap),
                                            middle + QPointF(0, side * (gap + rise)),
                                            middle + QPointF(half, side * gap)};
    painter.drawPolyline(corners.data(), static_cast<int>(corners.size()));
  }
  painter.restore();
}

void drawPopUp(const QStyleOptionComboBox& popUp, QPainter& painter) {
  const QColor bezel = popUp.palette.color(QPalette::Button);
  drawBezel(painter, popUp.rect, bezelRadius, bezelFill(popUp, bezel),
            bezelEdge(popUp, showsFocus(popUp)));
  QRect arrows = popUp.rect;
  arrows.setLeft(arrows.right() - popUpArrowRoom);
  drawPopUpArrows(painter, arrows, popUp.palette.color(QPalette::ButtonText));
}

void drawPopUpTitle(const QStyleOptionComboBox& popUp, QPainter& painter) {
  const QRect room = popUp.rect.adjusted(textInset, 0, -popUpArrowRoom, 0);
  painter.setPen(popUp.palette.color(QPalette::ButtonText));
  painter.drawText(room, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                   popUp.fontMetrics.elidedText(popUp.currentText, Qt::ElideMiddle, room.width()));
}

}  // namespace

DarkStyle::DarkStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}

void DarkStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  const auto* popUp = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
  if (element == CE_PushButton && button != nullptr) {
    drawPushButton(*button, *painter);
  } else if (element == CE_CheckBox && button != nullptr) {
    drawCheckBox(*button, *painter);
  } else if (element == CE_ComboBoxLabel && popUp != nullptr) {
    drawPopUpTitle(*popUp, *painter);
  } else if (element == CE_MenuBarItem && item != nullptr) {
    drawMenuBarItem(*item, *painter);
  } else if (element == CE_MenuItem && item != nullptr) {
    drawMenuItem(*item, *painter);
  } else if (element == CE_MenuBarEmptyArea) {
    painter->fillRect(option->rect, option->palette.color(QPalette::Window));
  } else {
    QProxyStyle::drawControl(element, option, painter, widget);
  }
}

void DarkStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                              QPainter* painter, const QWidget* widget) const {
  if (element == PE_PanelLineEdit) {
    drawBezel(*painter, option->rect, bezelRadius, option->palette.color(QPalette::Base),
              bezelEdge(*option, has(*option, State_HasFocus)));
  } else if (element == PE_PanelMenu || element == PE_Frame) {
    drawMenuPanel(*option, *painter);
  } else if (element != PE_FrameMenu && element != PE_FrameFocusRect) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void DarkStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                   QPainter* painter, const QWidget* widget) const {
  const auto* popUp = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ComboBox && popUp != nullptr) {
    drawPopUp(*popUp, *painter);
  } else if (control == CC_ScrollBar && bar != nullptr) {
    drawScrollBar(*bar, *painter);
  } else {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
  }
}

QRect DarkStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                SubControl part, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar != nullptr) return scrollBarPart(*bar, part);
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QRect DarkStyle::subElementRect(SubElement element, const QStyleOption* option,
                                const QWidget* widget) const {
  switch (element) {
    case SE_CheckBoxClickRect:
      return option->rect;
    case SE_LineEditContents:
      // The library keeps two more on each side.
      return option->rect.adjusted(textInset - 2, 1, 2 - textInset, -1);
    default:
      return QProxyStyle::subElementRect(element, option, widget);
  }
}

QSize DarkStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                  const QSize& contents, const QWidget* widget) const {
  switch (type) {
    case CT_PushButton:
      return {contents.width() + 2 * titleInset, controlHeight};
    case CT_CheckBox: {
      const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
      const bool isBare = button == nullptr || button->text.isEmpty();
      return {isBare ? checkRoom : checkRoom + checkTitleGap + contents.width(), checkHeight};
    }
    case CT_ComboBox:
      return {std::max(smallestPopUp, contents.width() + popUpTitleRoom), controlHeight};
    case CT_MenuItem:
      return menuItemSize(contents);
    case CT_LineEdit:
      return {contents.width() + 2 * textInset, controlHeight};
    default:
      return QProxyStyle::sizeFromContents(type, option, contents, widget);
  }
}

int DarkStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                           const QWidget* widget) const {
  switch (metric) {
    case PM_MenuPanelWidth:
      return menuPadding;
    case PM_ScrollBarExtent:
      return scrollBarExtent;
    case PM_DefaultFrameWidth:
      return widget != nullptr && widget->inherits("QLineEdit")
                 ? 1
                 : QProxyStyle::pixelMetric(metric, option, widget);
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int DarkStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                         QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_Menu_Mask:
      if (auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returned)) {
        mask->region = menuMask(option->rect.size());
      }
      return 1;
    case SH_ComboBox_Popup:
    case SH_BlinkCursorWhenTextSelected:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

}  // namespace vorrin
