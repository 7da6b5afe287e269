#pragma once

#include "engine/engine.h"

namespace vorrin {

/// The one engine of the program.
extern Engine engine;

}  // namespace vorrin
