#include "platform/linux/input/helper/backend.h"

#include <gmock/gmock.h>

#include <array>
#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "fake_helper.h"

namespace vorrin::helper {
namespace {

using namespace helper_protocol;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint16_t tabKey = 48;  // macOS's numbers
constexpr std::uint16_t backtickKey = 50;
constexpr std::uint16_t oneKey = 18;
constexpr std::uint16_t escapeKey = 53;
constexpr std::uint16_t evdevTab = 15;  // the kernel's
constexpr std::uint16_t evdevBacktick = 41;
constexpr std::uint16_t evdevOne = 2;
constexpr std::uint16_t evdevEscape = 1;
constexpr std::uint64_t keyEvents = 0xC00;
constexpr std::array claimed{tabKey};

/// What the tap's callback saw, and what it answers.
std::vector<TapEvent> seen;
TapVerdict verdict = TapVerdict::pass;

TapVerdict remember(const TapEvent& event) {
  seen.push_back(event);
  return verdict;
}

bool until(const std::function<bool()>& holds) {
  const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!holds()) {
    if (std::chrono::steady_clock::now() >= end) return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

/// Does at its end what an event loop would have done at its next turn.
struct LastTurn {
  ~LastTurn() { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }
};

class BackendTest : public testing::Test {
 protected:
  BackendTest() {
    seen.clear();
    verdict = TapVerdict::pass;
  }

  /// Asks as the user does and has the helper serve.
  void connect() {
    backend.isTrustedWithPrompt();
    helper.serve();
    ASSERT_TRUE(until([this] { return backend.isTrusted(); }));
    helper.heard();
  }

  void makeTap() {
    connect();
    tap = backend.createTap(keyEvents, remember, [this] {
      invalidated = true;
      tap.reset();
    });
    ASSERT_TRUE(tap);
    tap->addToMainRunLoop();
    tap->setEnabled(true);
    ASSERT_TRUE(tap->claim(claimed));
    helper.heard();
  }

  /// What the helper is told next.
  ToHelper nextHeard() {
    std::vector<ToHelper> heard;
    EXPECT_TRUE(until([&] { return !(heard = helper.heard()).empty(); }));
    return heard.empty() ? ToHelper(Hello{}) : heard.back();
  }

  /// Whether the helper is left, with this word in the log, and not started again by itself.
  void expectLeft(const std::string& word) {
    testing::internal::CaptureStderr();
    EXPECT_TRUE(until([this] { return helper.isLeft(); }));
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(word));
    EXPECT_FALSE(backend.isTrusted());
    EXPECT_EQ(helper.starts().size(), 1U);
  }

  int argumentCount = 0;
  QCoreApplication application{argumentCount, nullptr};
  LastTurn lastTurn;  // after all that is declared below it
  FakeHelper helper;
  Backend backend{helper.start()};
  std::shared_ptr<Tap> tap;
  bool invalidated = false;
};

TEST_F(BackendTest, nothing_is_started_before_the_user_was_asked) {
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_THAT(helper.starts(), IsEmpty());
}

TEST_F(BackendTest, asking_starts_the_helper_and_says_hello) {
  EXPECT_FALSE(backend.isTrustedWithPrompt());
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Hello{})));
}

TEST_F(BackendTest, devices_that_are_open_need_no_polkit) {
  backend.isTrustedWithPrompt();
  EXPECT_THAT(helper.starts(), ElementsAre(StartWay::directly));
}

TEST_F(BackendTest, closed_devices_are_asked_for) {
  helper.devicesAreOpen = false;
  backend.isTrustedWithPrompt();
  EXPECT_THAT(helper.starts(), ElementsAre(StartWay::asking));
}

TEST_F(BackendTest, a_helper_that_serves_is_the_permission) {
  connect();
  EXPECT_TRUE(backend.isTrusted());
}

TEST_F(BackendTest, a_helper_that_only_says_hello_is_no_permission) {
  backend.isTrustedWithPrompt();
  helper.say(Hello{});
  helper.say(Ending{EndReason::noUinput});
  EXPECT_TRUE(until([this] { return helper.isLeft(); }));
  EXPECT_FALSE(backend.isTrusted());
}

TEST_F(BackendTest, a_refusal_is_not_asked_about_again) {
  helper.devicesAreOpen = false;
  backend.isTrustedWithPrompt();
  testing::internal::CaptureStderr();
  constexpr int dismissed = 126;
  helper.end(dismissed);
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("not given"));
  QCoreApplication::processEvents();
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_THAT(helper.starts(), ElementsAre(StartWay::asking));
  backend.isTrustedWithPrompt();
  EXPECT_THAT(helper.starts(), ElementsAre(StartWay::asking, StartWay::asking));
}

TEST_F(BackendTest, a_permission_given_later_is_taken_up_without_a_question) {
  helper.devicesAreOpen = false;
  backend.isTrustedWithPrompt();
  helper.end(127);
  helper.allowed = true;
  EXPECT_TRUE(until([this] { return helper.starts().size() == 2; }));
  EXPECT_EQ(helper.starts().back(), StartWay::silently);
}

TEST_F(BackendTest, a_held_keyboard_gives_the_permission_but_no_tap) {
  backend.isTrustedWithPrompt();
  helper.serve(false);
  EXPECT_TRUE(until([this] { return backend.isTrusted(); }));
  EXPECT_FALSE(backend.createTap(keyEvents, remember, {}));
}

TEST_F(BackendTest, an_enabled_tap_is_told_to_the_helper) {
  connect();
  tap = backend.createTap(keyEvents, remember, {});
  ASSERT_TRUE(tap);
  tap->addToMainRunLoop();
  tap->setEnabled(true);
  ASSERT_TRUE(tap->claim(claimed));
  EXPECT_EQ(nextHeard(), ToHelper(Configure{true, 1, {evdevTab}}));
}

TEST_F(BackendTest, a_question_is_answered_with_the_tap_s_verdict) {
  makeTap();
  helper.say(Question{7, evdevTab, {.shift = true}});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(7, false)));
  verdict = TapVerdict::swallow;
  helper.say(Question{8, evdevTab, {}});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(8, true)));
  ASSERT_EQ(seen.size(), 2U);
  EXPECT_EQ(seen[0].keyCode, tabKey);
  EXPECT_EQ(seen[0].flags, event_flags::maskShift);
}

TEST_F(BackendTest, escape_is_told_with_its_repeats_and_its_release) {
  makeTap();
  helper.say(KeyMoved{evdevEscape, true, false, {}});
  helper.say(KeyMoved{evdevEscape, true, true, {}});
  helper.say(KeyMoved{evdevEscape, false, false, {.control = true}});
  ASSERT_TRUE(until([] { return seen.size() == 3; }));
  for (const TapEvent& event : seen) EXPECT_EQ(event.keyCode, escapeKey);
  EXPECT_EQ(seen[0].type, EventType::keyDown);
  EXPECT_EQ(seen[0].autorepeat, 0);
  EXPECT_EQ(seen[1].autorepeat, 1);
  EXPECT_EQ(seen[2].type, EventType::keyUp);
  EXPECT_EQ(seen[2].flags, event_flags::maskControl);
}

TEST_F(BackendTest, a_key_that_moves_without_a_tap_is_told_to_nobody) {
  makeTap();
  tap.reset();
  helper.heard();
  helper.say(KeyMoved{evdevEscape, true, false, {}});
  helper.say(Question{1, evdevTab, {}});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(1, false)));
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(BackendTest, other_keys_that_are_claimed_are_told_to_the_helper) {
  makeTap();
  EXPECT_TRUE(tap->claim(std::array{tabKey, oneKey, backtickKey}));
  EXPECT_EQ(nextHeard(), ToHelper(Configure{true, 2, {evdevTab, evdevBacktick}}));
}

TEST_F(BackendTest, a_tap_without_a_helper_can_claim_nothing) {
  makeTap();
  const auto kept = tap;
  helper.hangUp();
  ASSERT_TRUE(until([this] { return invalidated; }));
  EXPECT_FALSE(kept->canClaim(claimed));
  EXPECT_FALSE(kept->claim(claimed));
}

TEST_F(BackendTest, a_helper_found_gone_when_it_is_told_something_invalidates_the_tap) {
  makeTap();
  helper.hangUp();
  tap->setEnabled(false);
  EXPECT_FALSE(invalidated) << "not within the call";
  EXPECT_TRUE(until([this] { return invalidated && helper.starts().size() == 2; }));
}

TEST_F(BackendTest, a_helper_that_was_gone_before_the_hello_is_tried_again_later) {
  helper.isGone = true;
  EXPECT_FALSE(backend.isTrustedWithPrompt());
  helper.isGone = false;
  EXPECT_TRUE(until([this] { return helper.starts().size() == 2; }));
  helper.serve();
  EXPECT_TRUE(until([this] { return backend.isTrusted(); }));
}

TEST_F(BackendTest, a_helper_that_cannot_be_started_is_given_up) {
  helper.isMissing = true;
  testing::internal::CaptureStderr();
  EXPECT_FALSE(backend.isTrustedWithPrompt());
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("cannot be started"));
  ASSERT_TRUE(until([this] { return helper.starts().size() == 3; }));
  helper.isMissing = false;
  const auto longEnough = std::chrono::steady_clock::now() + std::chrono::milliseconds(1200);
  EXPECT_TRUE(until([&] { return std::chrono::steady_clock::now() >= longEnough; }));
  EXPECT_EQ(helper.starts().size(), 3U);
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.starts().size(), 4U);
}

TEST_F(BackendTest, a_question_without_a_tap_lets_the_key_pass) {
  connect();
  helper.say(Question{1, evdevTab, {}});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(1, false)));
}

TEST_F(BackendTest, a_tap_disabled_for_want_of_an_answer_is_told_so_and_asked_no_more) {
  makeTap();
  helper.say(Disabled{DisableReason::noAnswer});
  ASSERT_TRUE(until([] { return !seen.empty(); }));
  EXPECT_EQ(seen.front().type, EventType::tapDisabledByTimeout);
  seen.clear();
  verdict = TapVerdict::swallow;
  helper.say(Question{1, evdevTab, {}});
  EXPECT_EQ(nextHeard(), ToHelper(Verdict(1, false)));
  EXPECT_THAT(seen, IsEmpty());
}

TEST_F(BackendTest, a_tap_disabled_with_its_session_is_told_so) {
  makeTap();
  helper.say(Disabled{DisableReason::session});
  ASSERT_TRUE(until([] { return !seen.empty(); }));
  EXPECT_EQ(seen.front().type, EventType::tapDisabledByUserInput);
}

TEST_F(BackendTest, a_helper_that_ends_invalidates_the_tap_and_is_started_again) {
  makeTap();
  helper.hangUp();
  EXPECT_TRUE(until([this] { return invalidated; }));
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_TRUE(until([this] { return helper.starts().size() == 2; }));
}

TEST_F(BackendTest, helpers_that_always_end_at_once_are_given_up) {
  backend.isTrustedWithPrompt();
  for (std::size_t started = 1; started < 3; ++started) {
    helper.hangUp();
    ASSERT_TRUE(until([&] { return helper.starts().size() == started + 1; }));
  }
  helper.hangUp();
  QCoreApplication::processEvents();
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_EQ(helper.starts().size(), 3U);
}

TEST_F(BackendTest, a_keyboard_that_another_program_takes_invalidates_the_tap) {
  makeTap();
  helper.say(Availability{false});
  EXPECT_TRUE(until([this] { return invalidated; }));
  EXPECT_TRUE(backend.isTrusted());
}

TEST_F(BackendTest, after_the_panic_chord_only_the_user_starts_it_again) {
  makeTap();
  helper.say(Ending{EndReason::panicChord});
  expectLeft("Retry connection");
  EXPECT_TRUE(invalidated);
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.starts().size(), 2U);
}

TEST_F(BackendTest, a_permission_taken_back_is_taken_up_without_a_question_once_it_is_given_again) {
  helper.devicesAreOpen = false;
  makeTap();
  testing::internal::CaptureStderr();
  helper.say(Ending{EndReason::revoked});
  EXPECT_TRUE(until([this] { return invalidated; }));
  EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("taken back"));
  EXPECT_THAT(helper.starts(), ElementsAre(StartWay::asking));
  helper.allowed = true;
  EXPECT_TRUE(until([this] { return helper.starts().size() == 2; }));
  EXPECT_EQ(helper.starts().back(), StartWay::silently);
}

TEST_F(BackendTest, a_permission_given_up_is_taken_up_by_the_user_only) {
  makeTap();
  backend.giveUpPermission();
  EXPECT_TRUE(invalidated);
  EXPECT_FALSE(backend.isTrusted());
  EXPECT_EQ(helper.starts().size(), 1U);
  backend.isTrustedWithPrompt();
  EXPECT_EQ(helper.starts().size(), 2U);
}

TEST_F(BackendTest, a_helper_of_another_version_is_left) {
  backend.isTrustedWithPrompt();
  helper.say(Hello{version + 1});
  expectLeft("another version");
}

TEST_F(BackendTest, a_message_before_the_hello_is_refused) {
  backend.isTrustedWithPrompt();
  helper.say(Availability{true});
  expectLeft("no meaning");
}

TEST_F(BackendTest, a_second_hello_is_refused) {
  makeTap();
  helper.say(Hello{});
  expectLeft("no meaning");
  EXPECT_TRUE(invalidated);
}

TEST_F(BackendTest, posts_of_one_tick_are_one_message) {
  connect();
  const std::array click{SyntheticEvent{.type = EventType::leftMouseDown, .location = {}},
                         SyntheticEvent{.type = EventType::leftMouseUp, .location = {}}};
  backend.post(click);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{2, {{{0, true}, {0, false}}}})));
}

TEST_F(BackendTest, a_digit_is_posted_by_its_place_on_the_keyboard) {
  connect();
  const std::array press{
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = oneKey},
      SyntheticEvent{.type = EventType::keyUp, .location = {}, .keyCode = oneKey}};
  backend.post(press);
  EXPECT_THAT(helper.heard(),
              ElementsAre(ToHelper(Post{2, {{{evdevOne, true}, {evdevOne, false}}}})));
}

TEST_F(BackendTest, nothing_but_digits_and_the_left_button_is_posted) {
  connect();
  const std::array keys{
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = tabKey},
      SyntheticEvent{.type = EventType::keyDown, .location = {}, .keyCode = 0xFFFF},
      SyntheticEvent{.type = EventType::tapDisabledByTimeout, .location = {}},
      SyntheticEvent{.type = EventType::keyUp, .location = {}, .keyCode = oneKey}};
  backend.post(keys);
  EXPECT_THAT(helper.heard(), ElementsAre(ToHelper(Post{1, {{{evdevOne, false}}}})));
}

TEST_F(BackendTest, the_pointer_is_where_a_click_happens) {
  EXPECT_TRUE(backend.pointerLocation());
}

TEST_F(BackendTest, without_a_helper_nothing_is_posted) {
  const std::array click{SyntheticEvent{.type = EventType::leftMouseDown, .location = {}}};
  backend.post(click);
  EXPECT_THAT(helper.starts(), IsEmpty());
}

/// Packets that no message is made of.
struct BadPacket : BackendTest, testing::WithParamInterface<std::string> {};

std::string whole() {
  const auto packet = encode(FromHelper(Question{1, evdevTab, {}}));
  return {reinterpret_cast<const char*>(packet.bytes.data()), packet.size};
}

INSTANTIATE_TEST_SUITE_P(FromTheHelper, BadPacket,
                         testing::Values("x", std::string(60'000, 'x'), whole().substr(0, 6),
                                         whole() + "more", std::string("\x66\0\xFF\xFF\1", 5),
                                         std::string("\x66\0\5\0\2", 5)),
                         [](const auto& packet) { return std::to_string(packet.index); });

TEST_P(BadPacket, ends_the_connection_and_the_tap) {
  makeTap();
  helper.sayBytes(GetParam());
  expectLeft("no meaning");
  EXPECT_TRUE(invalidated);
}

TEST_P(BadPacket, as_the_first_word_ends_the_connection) {
  backend.isTrustedWithPrompt();
  helper.sayBytes(GetParam());
  expectLeft("no meaning");
}

}  // namespace
}  // namespace vorrin::helper
