#pragma once

#include <functional>

namespace vorrin {

/// Runs `body` in a child that is killed at its instant number `count`, from 0 on. False when it
/// ended before.
bool killedAtInstant(int count, const std::function<void()>& body);

}  // namespace vorrin
