#pragma once

#include <unicode/utypes.h>

#include "platform/fatal_error.h"

namespace vorrin {

/// ICU fails only where its installation is broken or it was called wrongly.
inline void requireSuccess(UErrorCode status) {
  if (U_FAILURE(status)) fatalError(u_errorName(status));
}

}  // namespace vorrin
