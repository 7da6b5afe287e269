#pragma once

#include <string>

namespace vorrin::faults {

/// The keys and buttons that are down on any device of an X server, whoever pressed them, in words:
/// "key 38 of Xvfb keyboard". Empty when nothing is down.
std::string heldInput(const std::string& display);

}  // namespace vorrin::faults
