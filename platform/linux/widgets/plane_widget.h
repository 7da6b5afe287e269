#pragma once

#include <QColor>
#include <QWidget>

#include "platform/linux/widgets/native_view.h"

namespace vorrin {

/// A view that is no control: nothing to be seen, or a plane of one colour with round corners and
/// an edge line if asked.
class PlaneWidget : public QWidget, public NativeView {
 public:
  struct Layer {
    QColor background = Qt::transparent;
    double cornerRadius = 0;
    double borderWidth = 0;
    QColor border = Qt::transparent;
  };

  explicit PlaneWidget(std::string_view kindName) : kindName_(kindName) {}

  void setLayer(const Layer& layer);

  [[nodiscard]] std::string_view kindName() const override { return kindName_; }
  [[nodiscard]] bool isControl() const override { return false; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::string_view kindName_;
  Layer layer_;
};

}  // namespace vorrin
