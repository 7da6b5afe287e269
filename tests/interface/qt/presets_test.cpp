#include <QTest>
#include <filesystem>
#include <fstream>

#include "bridge/program_engine.h"
#include "presets_test.h"
#include "qt_driver.h"

namespace vorrin {
namespace {

using testing::IsEmpty;

class QtPresets : public PresetsTest {
 protected:
  [[nodiscard]] Sheet& sheet() const { return driver::shownSheet(app->window); }
  void press(Qt::Key key) const { QTest::keyClick(widgetOf(app->window).windowHandle(), key); }
};

TEST_F(QtPresets, delete_can_be_reached_by_keyboard) {
  savePreset("Night", other());
  click(button("Delete"));
  press(Qt::Key_Tab);
  EXPECT_TRUE(driver::sheetButton(app->window, "Delete").hasFocus());
  press(Qt::Key_Return);
  EXPECT_THAT(app->presetStore().all().value, IsEmpty());
}

TEST_F(QtPresets, while_a_question_is_open_the_window_takes_no_input) {
  savePreset("Night", other());
  click(button("Delete"));
  click(app->buttons[0]);
  click(app->checks[0]);
  EXPECT_FALSE(engine.running[0]);
  EXPECT_TRUE(app->checks[0].isOn());
  answer("Cancel");
  click(app->buttons[0]);
  EXPECT_TRUE(engine.running[0]);
}

TEST_F(QtPresets, when_nothing_can_be_stored_saving_says_so) {
  std::ofstream(home.path / ".config") << "in the way of the directory";
  launch();
  save("Night");
  EXPECT_EQ(app->presetNotice.text(), "Could not save preset.");
}

TEST_F(QtPresets, space_and_the_pads_enter_do_not_delete) {
  savePreset("Night", other());
  for (const Qt::Key key : {Qt::Key_Enter, Qt::Key_Space}) {
    click(button("Delete"));
    press(key);
    EXPECT_FALSE(hasSheet());
    EXPECT_EQ(app->presetStore().all().value.size(), 1U);
  }
}

}  // namespace
}  // namespace vorrin
