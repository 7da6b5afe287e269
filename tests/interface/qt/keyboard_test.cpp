#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QMenu>
#include <QTest>

#include "bridge/program_engine.h"
#include "platform/linux/widgets/window_widget.h"
#include "qt_interface_test.h"

// The window worked without a pointer.

namespace vorrin {
namespace {

class QtKeyboard : public QtInterfaceTest {
 protected:
  /// Moves the keyboard to `view` by Tab alone.
  void tabTo(const View& view) {
    const QWidget& wanted = widgetOf(view);
    for (std::size_t i = 0; i <= allControls().size() && !wanted.hasFocus(); ++i) {
      press(Qt::Key_Tab);
    }
    ASSERT_TRUE(wanted.hasFocus());
  }

  /// Opens the pop-up of the digits by this key, and gives its list.
  QWidget& openOutputBy(Qt::Key key) {
    tabTo(app->output);
    press(key);
    QWidget& list = *widgetOf<QComboBox>(app->output).view();
    EXPECT_TRUE(waitFor([&list] { return list.isVisible(); }));
    return list;
  }

  /// The controls that can have the keyboard, as the eye reads them.
  [[nodiscard]] std::vector<View> stops() const {
    std::vector<View> views = allControls();
    std::erase_if(views, [](const View& view) {
      const QWidget& widget = widgetOf(view);
      return widget.focusPolicy() == Qt::NoFocus || !widget.isEnabled();
    });
    return views;
  }
};

TEST_F(QtKeyboard, tab_goes_through_the_controls_as_the_eye_does_and_shift_tab_back) {
  savePreset("Night", *app->currentPreset());
  const std::vector<View> expected = stops();
  ASSERT_EQ(expected.size(), 19U);
  for (const View& stop : expected) {
    press(Qt::Key_Tab);
    EXPECT_TRUE(widgetOf(stop).hasFocus()) << stop.description();
  }
  press(Qt::Key_Tab);
  EXPECT_TRUE(widgetOf(expected.front()).hasFocus());
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_TRUE(widgetOf(expected.back()).hasFocus());
}

TEST_F(QtKeyboard, space_and_enter_press_the_button_that_has_the_keyboard) {
  tabTo(app->buttons[0]);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
    const bool before = engine.running[0];
    press(key);
    EXPECT_NE(engine.running[0], before);
  }
}

TEST_F(QtKeyboard, a_held_enter_presses_a_button_once) {
  tabTo(app->buttons[0]);
  QWidget& startButton = widgetOf(app->buttons[0]);
  QKeyEvent first(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r");
  QApplication::sendEvent(&startButton, &first);
  QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r", true);
  QApplication::sendEvent(&startButton, &repeated);
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(QtKeyboard, space_and_enter_change_a_check_box) {
  tabTo(app->checks[0]);
  press(Qt::Key_Space);
  EXPECT_EQ(stored("enabled0"), DefaultsObject(false));
  press(Qt::Key_Return);
  EXPECT_EQ(stored("enabled0"), DefaultsObject(true));
}

TEST_F(QtKeyboard, space_and_enter_open_a_pop_up_and_enter_takes_the_item) {
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return}) {
    app->output.selectItem(1);
    QWidget& list = openOutputBy(key);
    QTest::keyClick(&list, Qt::Key_Down);
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_TRUE(waitFor([&list] { return !list.isVisible(); }));
    EXPECT_EQ(app->output.indexOfSelectedItem(), 2);
    EXPECT_EQ(stored("digit"), DefaultsObject(std::int64_t{2}));
  }
}

TEST_F(QtKeyboard, escape_closes_a_pop_up_and_changes_nothing) {
  QWidget& list = openOutputBy(Qt::Key_Space);
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Escape);
  EXPECT_TRUE(waitFor([&list] { return !list.isVisible(); }));
  EXPECT_EQ(app->output.indexOfSelectedItem(), 1);
  EXPECT_EQ(stored("digit"), std::nullopt);
}

TEST_F(QtKeyboard, arrows_choose_in_a_closed_pop_up) {
  tabTo(app->output);
  press(Qt::Key_Down);
  EXPECT_EQ(stored("digit"), DefaultsObject(std::int64_t{2}));
}

TEST_F(QtKeyboard, escape_is_left_to_the_listener_wherever_the_keyboard_is) {
  for (const View& stop : stops()) {
    QWidget& widget = widgetOf(stop);
    widget.setFocus();
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(&widget, &escape);
    EXPECT_FALSE(escape.isAccepted()) << stop.description();
  }
}

TEST_F(QtKeyboard, both_key_combinations_toggle_the_full_screen_and_escape_does_not_leave_it) {
  press(Qt::Key_F11);
  ASSERT_TRUE(waitFor([this] { return window().isFullScreen(); }));
  press(Qt::Key_Escape);
  EXPECT_TRUE(window().isFullScreen());
  press(Qt::Key_F, Qt::ControlModifier | Qt::MetaModifier);
  EXPECT_TRUE(waitFor([this] { return !window().isFullScreen(); }));
}

TEST_F(QtKeyboard, f10_opens_the_first_menu_with_its_first_item_chosen) {
  press(Qt::Key_F10);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  EXPECT_EQ(menu->activeAction()->text(), "&Quit Vorrin");
  QTest::keyClick(menu, Qt::Key_Escape);
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
}

TEST_F(QtKeyboard, alt_and_its_letter_open_a_menu_and_the_item_s_letter_chooses) {
  press(Qt::Key_V, Qt::AltModifier);
  auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
  ASSERT_NE(menu, nullptr);
  QTest::keyClick(menu, Qt::Key_T);
  EXPECT_TRUE(waitFor([this] { return window().isFullScreen(); }));
}

TEST_F(QtKeyboard, enter_in_a_field_presses_nothing) {
  click(app->fields[0]);
  press(Qt::Key_Return);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_EQ(app->saveNotice.text(), "Settings save automatically.");
}

}  // namespace
}  // namespace vorrin
