#include "backend_test.h"

namespace vorrin::helper {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(BackendTest, posts_of_one_tick_are_one_message) {
  connect();
  const std::array click{SyntheticEvent{.type = EventType::leftMouseDown, .location = {}},
                         SyntheticEvent{.type = EventType::leftMouseUp, .location = {}}};
  backend.post(click);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{2, {{{0, 1}, {0, 0}}}})));
}

TEST_F(BackendTest, a_digit_is_posted_by_its_place_on_the_keyboard) {
  connect();
  const std::array press{
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = oneKey},
      SyntheticEvent{.type = EventType::keyUp, .location = {}, .keyCode = oneKey}};
  backend.post(press);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{2, {{{evdevOne, 1}, {evdevOne, 0}}}})));
}

TEST_F(BackendTest, nothing_but_digits_and_the_left_button_is_posted) {
  connect();
  const std::array keys{
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = tabKey},
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = 0xFFFF},
      SyntheticEvent{.type = EventType::tapDisabledByTimeout, .location = {}},
      SyntheticEvent{.type = EventType::keyUp, .location = {}, .keyCode = oneKey}};
  backend.post(keys);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{1, {{{evdevOne, 0}}}})));
}

TEST_F(BackendTest, without_a_helper_nothing_is_posted) {
  const std::array click{SyntheticEvent{.type = EventType::leftMouseDown, .location = {}}};
  backend.post(click);
  EXPECT_THAT(helper.calls(), IsEmpty());
}

}  // namespace
}  // namespace vorrin::helper
