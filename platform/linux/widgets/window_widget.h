#pragma once

#include <QMenuBar>
#include <QPointer>
#include <QWidget>

#include "platform/linux/widgets/plane_widget.h"
#include "platform/window.h"

class QDialog;

namespace vorrin {

/// A window: the main menu's bar above the content view.
class WindowWidget : public QWidget {
 public:
  WindowWidget(QSize contentSize, std::uint32_t style);
  ~WindowWidget() override;

  /// Shows the application's main menu in the bar of this window, in place of what is there.
  void showMainMenu();
  void setContentSize(QSize size);
  void setContentMinSize(QSize size);
  /// Asks the window manager for a dark frame; those that know of dark frames go by this.
  void askForDarkFrame();

  const std::uint32_t styleMask;
  std::uint32_t collectionBehavior = 0;
  Color backgroundColor;
  PlaneWidget* const contentView;
  /// The sheet that waits for its answer, if any.
  QPointer<QDialog> sheet;

 protected:
  bool event(QEvent* event) override;

 private:
  [[nodiscard]] QSize withMenuBar(QSize contentSize) const;

  QMenuBar* const menuBar_;
  QSize contentMinSize_;
};

/// All windows there are.
const std::vector<WindowWidget*>& windows();

struct Window::Native {
  explicit Native(WindowWidget& window) : widget(&window) {}
  ~Native();
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  QPointer<WindowWidget> widget;
};

WindowWidget& widgetOf(const Window& window);

}  // namespace vorrin
