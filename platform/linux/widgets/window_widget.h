#pragma once

#include <QMenuBar>
#include <QPointer>
#include <QWidget>

#include "platform/linux/widgets/plane_widget.h"
#include "platform/window.h"

namespace vorrin {

class ScrollView;
class Sheet;

/// A window: the main menu's bar above the content view, which can be scrolled where the window is
/// smaller than it.
class WindowWidget : public QWidget {
 public:
  WindowWidget(QSize contentSize, std::uint32_t style);

  void setContentSize(QSize size);
  void setContentMinSize(QSize size);
  /// Puts the window into the middle of the room that the screen has for it; one that is larger
  /// shows its upper left part.
  void center();
  /// Covers the content view with `view`, which gets the keyboard, and disables it.
  void showOverContent(QWidget& view);
  /// Asks the window manager for a dark frame; those that know of dark frames go by this.
  void askForDarkFrame();

  const std::uint32_t styleMask;
  std::uint32_t collectionBehavior = 0;
  Color backgroundColor;
  PlaneWidget* const contentView;
  /// The sheet that waits for its answer, if any.
  QPointer<Sheet> sheet;

 protected:
  bool event(QEvent* event) override;

 private:
  void openFirstMenu();
  /// A window manager takes the smallest size at its word, and the screen may have less room.
  void fitToScreen();
  /// What the window manager puts around it, as far as it has told.
  [[nodiscard]] QSize frameSize() const;
  [[nodiscard]] QSize withMenuBar(QSize contentSize) const;

  ScrollView* const scrollView_;
  QMenuBar* const menuBar_;
  QSize contentMinSize_;
  /// Whether the window was fitted with the frame that the window manager gave it.
  bool isFramed_ = false;
};

/// The first window there is; null without one.
WindowWidget* firstWindow();

struct Window::Native {
  explicit Native(WindowWidget& window) : widget(&window) {}
  ~Native();
  Native(const Native&) = delete;
  Native& operator=(const Native&) = delete;

  QPointer<WindowWidget> widget;
};

WindowWidget& widgetOf(const Window& window);

}  // namespace vorrin
