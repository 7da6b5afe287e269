#pragma once

#include <string>

namespace vorrin {

/// A newly generated UUID in its standard upper-case text form of 36 characters.
std::string newUuidString();

}  // namespace vorrin
