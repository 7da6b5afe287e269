#pragma once

namespace vorrin {

/// Whether this run checks the program's own logic and ends, without a window and without posting
/// anything: "--self-test" was among the arguments. Set once, at entry.
extern bool dryRun;

/// Takes from the command line what the program-wide values need of it.
void readArguments(int argumentCount, const char* const* arguments);

}  // namespace vorrin
