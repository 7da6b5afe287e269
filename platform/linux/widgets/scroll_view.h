#pragma once

#include <QScrollArea>

namespace vorrin {

/// Shows the view inside whole where there is room. Where there is not it can be scrolled: by bars,
/// wheel and keys, and by moving the keyboard to a control that is out of sight.
class ScrollView : public QScrollArea {
 public:
  explicit ScrollView(QWidget* parent);
};

}  // namespace vorrin
