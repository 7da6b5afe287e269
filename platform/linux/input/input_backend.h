#pragma once

namespace vorrin {

namespace helper {
class Backend;
}

/// The backend that talks to the input helper; null where input goes through the X server.
helper::Backend* helperBackend();

}  // namespace vorrin
