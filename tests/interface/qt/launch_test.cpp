#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QScreen>

#include "qt_interface_test.h"

namespace vorrin {
namespace {

using testing::ElementsAre;

using QtLaunch = QtInterfaceTest;

TEST_F(QtLaunch, the_menus_hold_quit_and_full_screen_with_their_keys) {
  const auto* bar = widgetOf(app->window).findChild<QMenuBar*>();
  std::vector<std::string> items;
  for (const QAction* menu : bar->actions()) {
    for (const QAction* item : menu->menu<QMenu*>()->actions()) {
      items.push_back(menu->text().toStdString() + " > " + item->text().toStdString());
      for (const QKeySequence& keys : item->shortcuts()) {
        items.push_back(keys.toString(QKeySequence::PortableText).toStdString());
      }
    }
  }
  EXPECT_THAT(items, ElementsAre("V&orrin > &Quit Vorrin", "Ctrl+Q", "&View > &Toggle Full Screen",
                                 "F11", "Meta+Ctrl+F"));
}

TEST_F(QtLaunch, the_titles_in_the_menus_leave_no_room_for_pictures) {
  auto& menu = *widgetOf(app->window).findChild<QMenuBar*>()->actions().front()->menu();
  menu.ensurePolished();
  menu.resize(menu.sizeHint());
  const double start = startOfText(menu);
  EXPECT_GT(start, 0);
  EXPECT_LE(start, 16);
}

TEST_F(QtLaunch, tool_tips_say_what_a_number_and_a_key_are) {
  const auto tip = [](const View& view) { return widgetOf(view).toolTip().toStdString(); };
  EXPECT_EQ(tip(app->fields[1]), "0.05, with a full stop");
  EXPECT_THAT(tip(app->shortcuts[0]), testing::HasSubstr("Backtick ` is the key left of 1"));
  EXPECT_THAT(tip(app->output), testing::HasSubstr("on AZERTY 1 types &"));
}

TEST_F(QtLaunch, no_control_has_the_keyboard_at_first) {
  EXPECT_EQ(widgetOf(app->window).focusWidget(), &widgetOf(app->window.contentView()));
}

constexpr std::uint32_t everyStyle = window_style::titled | window_style::closable |
                                     window_style::miniaturizable | window_style::resizable;

TEST(QtWindow, it_is_centred_on_the_screen_and_a_larger_one_shows_its_upper_left_part) {
  Window window = Window::make({300, 200}, everyStyle);
  window.center();
  const QRect room = widgetOf(window).screen()->availableGeometry();
  EXPECT_LE((widgetOf(window).geometry().center() - room.center()).manhattanLength(), 2);
  window = Window::make({5000, 5000}, everyStyle);
  window.center();
  EXPECT_EQ(widgetOf(window).pos(), room.topLeft());
}

}  // namespace
}  // namespace vorrin
