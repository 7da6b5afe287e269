#include "platform/macos/input/event_translation.h"

#include <gmock/gmock.h>

#include "platform/macos/input/core_foundation_handle.h"
#include "quartz_stand_in.h"

namespace vorrin {
namespace {

using testing::UnorderedElementsAre;

class MacosEventTranslation : public testing::Test {
 protected:
  /// `fields` as Quartz hands it to a tap's callback.
  TapEvent translated(const QuartzStandIn::Event& fields) {
    const CoreFoundationHandle<CGEventRef> event(CGEventCreateKeyboardEvent(nullptr, 0, true));
    QuartzStandIn::setFields(event.get(), fields);
    quartz.takeCalls();
    return translatedEvent(static_cast<CGEventType>(fields.type), event.get());
  }

  QuartzStandIn quartz;
};

TEST_F(MacosEventTranslation, a_key_event_is_read_from_its_three_fields_and_its_flags) {
  translated({.type = 10});
  EXPECT_THAT(quartz.takeCalls(), UnorderedElementsAre("CGEventGetIntegerValueField(event, 42)",
                                                       "CGEventGetIntegerValueField(event, 9)",
                                                       "CGEventGetIntegerValueField(event, 8)",
                                                       "CGEventGetFlags(event)"));
}

TEST_F(MacosEventTranslation, type_10_is_a_key_down_and_11_a_key_up) {
  EXPECT_EQ(translated({.type = 10}).type, EventType::keyDown);
  EXPECT_EQ(translated({.type = 11}).type, EventType::keyUp);
}

TEST_F(MacosEventTranslation, every_field_keeps_its_value) {
  const TapEvent event = translated(
      {.type = 10, .keyCode = 48, .autorepeat = 1, .flags = 0x1E0000, .userData = 0x5652524E});
  EXPECT_EQ(event.keyCode, 48);
  EXPECT_EQ(event.autorepeat, 1);
  EXPECT_EQ(event.flags, 0x1E0000U);
  EXPECT_EQ(event.userData, 1448235598);
}

TEST_F(MacosEventTranslation, numbers_that_fit_no_key_code_are_passed_on_as_they_are) {
  EXPECT_EQ(translated({.type = 10, .keyCode = -1}).keyCode, -1);
  EXPECT_EQ(translated({.type = 10, .keyCode = 65536}).keyCode, 65536);
}

TEST_F(MacosEventTranslation, each_flag_has_the_bit_that_quartz_gives_it) {
  EXPECT_EQ(translated({.type = 10, .flags = 0x10000}).flags, event_flags::maskAlphaShift);
  EXPECT_EQ(translated({.type = 10, .flags = 0x20000}).flags, event_flags::maskShift);
  EXPECT_EQ(translated({.type = 10, .flags = 0x40000}).flags, event_flags::maskControl);
  EXPECT_EQ(translated({.type = 10, .flags = 0x80000}).flags, event_flags::maskAlternate);
  EXPECT_EQ(translated({.type = 10, .flags = 0x100000}).flags, event_flags::maskCommand);
  EXPECT_EQ(translated({.type = 10, .flags = 0x200000}).flags, event_flags::maskNumericPad);
}

TEST_F(MacosEventTranslation, the_two_notices_are_known_and_their_event_is_left_alone) {
  EXPECT_EQ(translatedEvent(static_cast<CGEventType>(0xFFFFFFFE), nullptr).type,
            EventType::tapDisabledByTimeout);
  EXPECT_EQ(translatedEvent(static_cast<CGEventType>(0xFFFFFFFF), nullptr).type,
            EventType::tapDisabledByUserInput);
  EXPECT_TRUE(quartz.calls.empty());
}

}  // namespace
}  // namespace vorrin
