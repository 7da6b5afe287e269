#pragma once

namespace vorrin {

/// The logic self-check behind "--self-test": drives the preset store in a throw-away domain and
/// the program-wide engine with an action that only counts. Prints a PASS line a section and
/// returns when everything holds; otherwise the process ends abnormally with "Assertion failed",
/// the check and its place. Needs no window, no display and no permission, and posts no event.
void runLogicSelfCheck();

}  // namespace vorrin
