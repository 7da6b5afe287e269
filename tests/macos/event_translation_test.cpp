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

TEST_F(MacosEventTranslation, the_two_notices_are_known) {
  EXPECT_TRUE(isTapDisabledNotice(static_cast<CGEventType>(0xFFFFFFFE)));
  EXPECT_TRUE(isTapDisabledNotice(static_cast<CGEventType>(0xFFFFFFFF)));
  EXPECT_FALSE(isTapDisabledNotice(kCGEventKeyDown));
}

}  // namespace
}  // namespace vorrin
