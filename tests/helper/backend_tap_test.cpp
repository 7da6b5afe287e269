#include "backend_test.h"

namespace vorrin::helper {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(BackendTest, a_question_is_answered_with_the_tap_s_verdict) {
  makeTap();
  helper.say(KeyMoved{7, evdevTab, 1, 0});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(7, 0)));
  verdict = TapVerdict::swallow;
  helper.say(KeyMoved{8, evdevTab, 1, 0});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(8, 1)));
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].keyCode, tabKey);
}

TEST_F(BackendTest, escape_is_told_with_its_repeats_and_its_release) {
  makeTap();
  helper.say(KeyMoved{0, evdevEscape, 1, 0});
  helper.say(KeyMoved{0, evdevEscape, 1, 1});
  helper.say(KeyMoved{0, evdevEscape, 0, 0});
  ASSERT_TRUE(until([] { return seen.size() == 3; }));
  for (const TapEvent& event : seen) EXPECT_EQ(event.keyCode, escapeKey);
  EXPECT_EQ(seen[0].type, EventType::keyDown);
  EXPECT_EQ(seen[0].autorepeat, 0);
  EXPECT_EQ(seen[1].autorepeat, 1);
  EXPECT_EQ(seen[2].type, EventType::keyUp);
}

TEST_F(BackendTest, a_key_that_moves_without_a_tap_is_told_to_nobody) {
  makeTap();
  tap.reset();
  helper.heard();
  helper.say(KeyMoved{0, evdevEscape, 1, 0});
  helper.say(KeyMoved{1, evdevTab, 1, 0});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(1, 0)));
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(BackendTest, other_keys_that_are_claimed_are_told_to_the_helper) {
  makeTap();
  EXPECT_TRUE(tap->claim(std::array{tabKey, oneKey, backtickKey}));
  EXPECT_EQ(nextHeard(), ToHelper(Configure{1, 0b11}));
}

TEST_F(BackendTest, a_helper_found_gone_when_it_is_told_something_invalidates_the_tap) {
  makeTap();
  helper.hangUp();
  tap->setEnabled(false);
  EXPECT_FALSE(invalidated) << "not within the call";
  EXPECT_TRUE(until([this] { return invalidated && helper.calls().size() == 2; }));
}

TEST_F(BackendTest, a_tap_disabled_for_want_of_an_answer_is_told_so_and_asked_no_more) {
  makeTap();
  testing::internal::CaptureStderr();
  helper.say(Disabled{1});
  ASSERT_TRUE(until([] { return !seen.empty(); }));
  EXPECT_EQ(seen.front().type, EventType::tapDisabledByTimeout);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("did not answer in time"));
  seen.clear();
  verdict = TapVerdict::swallow;
  helper.say(KeyMoved{1, evdevTab, 1, 0});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(1, 0)));
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(BackendTest, a_helper_that_ends_invalidates_the_tap_and_is_reached_again) {
  makeTap();
  const auto kept = tap;
  helper.hangUp();
  EXPECT_TRUE(until([this] { return invalidated; }));
  EXPECT_FALSE(kept->canClaim(claimed));
  EXPECT_FALSE(kept->claim(claimed));
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_TRUE(until([this] { return helper.calls().size() == 2; }));
  EXPECT_EQ(helper.calls().back(), "connect");
}

TEST_F(BackendTest, a_keyboard_that_is_taken_or_a_session_that_is_away_invalidates_the_tap) {
  makeTap();
  for (const auto listening : {Listening::keyboardTaken, Listening::sessionAway}) {
    helper.say(Availability{listening});
    EXPECT_TRUE(until([this] { return invalidated; }));
    EXPECT_TRUE(backend.isTrusted());
    EXPECT_FALSE(backend.createTap(keyEvents, remember, {}));
    helper.say(Availability{Listening::possible});
    EXPECT_TRUE(until([this] {
      tap = backend.createTap(keyEvents, remember, [this] { invalidated = true; });
      return tap != nullptr;
    }));
    invalidated = false;
  }
}

TEST_F(BackendTest, posts_of_one_tick_are_one_message_once_there_is_a_helper) {
  const auto event = [](EventType type, std::uint16_t key) {
    return SyntheticEvent{.type = type, .location = {}, .keyCode = key};
  };
  const std::array click{event(EventType::leftMouseDown, 0), event(EventType::leftMouseUp, 0)};
  const std::array press{event(EventType::keyDown, oneKey), event(EventType::keyUp, oneKey)};
  backend.post(click);
  EXPECT_THAT(helper.calls(), IsEmpty());
  connect();
  backend.post(click);
  backend.post(press);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{2, {{{0, 1}, {0, 0}}}}),
                                          ToHelper(Post{2, {{{evdevOne, 1}, {evdevOne, 0}}}})));
}

}  // namespace
}  // namespace vorrin::helper
