#pragma once

#include <QFont>

namespace vorrin {

/// A fixed-pitch font of this size in pixels whose lines ask for far more room above than its
/// letters fill, as those do that hold Chinese or Japanese characters too.
QFont tallFont(int pixels);

}  // namespace vorrin
