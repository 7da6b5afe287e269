#pragma once

#include "platform/color.h"

namespace vorrin {

/// The bright green of the theme: texts being edited, running macros, problems in the status line.
extern const Color hackerGreen;

/// The subdued green: stopped macros, the status line when all is well.
extern const Color dimGreen;

}  // namespace vorrin
