#pragma once

namespace vorrin {

/// Has windows show as windows to screen readers from now on; to the widget library they are mere
/// groups of controls.
void installAccessibleWindows();

}  // namespace vorrin
