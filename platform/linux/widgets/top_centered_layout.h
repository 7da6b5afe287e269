#pragma once

#include <QLayout>
#include <memory>
#include <vector>

namespace vorrin {

/// Hangs views from the top of their parent, centred from left to right, each as high as it needs
/// to be. Asks for no room itself, so a window's size never follows from what hangs in it.
class TopCenteredLayout : public QLayout {
 public:
  void add(QWidget& widget, int top, int width);

  [[nodiscard]] int count() const override;
  [[nodiscard]] QLayoutItem* itemAt(int index) const override;
  QLayoutItem* takeAt(int index) override;
  void addItem(QLayoutItem* item) override;
  [[nodiscard]] QSize sizeHint() const override { return {0, 0}; }
  [[nodiscard]] QSize minimumSize() const override { return {0, 0}; }
  void setGeometry(const QRect& rect) override;

 private:
  struct Hung {
    std::unique_ptr<QLayoutItem> item;
    int top = 0;
    int width = 0;
  };
  std::vector<Hung> hung_;
};

}  // namespace vorrin
