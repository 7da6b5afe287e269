#pragma once

#include "platform/accessibility.h"
#include "quartz_stand_in.h"

namespace vorrin {

/// Has forgotten what earlier tests showed of the grant, as with every change of the system's
/// answer.
inline void forgetTrust(QuartzStandIn& quartz) {
  for (const bool trusted : {true, false, true}) {
    quartz.trusted = trusted;
    isProcessTrusted();
  }
  quartz.calls.clear();
}

}  // namespace vorrin
