#pragma once

#include <sys/types.h>

namespace vorrin::bench {

/// What the kernel counts of a process, all its threads together.
struct ProcessFigures {
  double processorSeconds = 0;  ///< time on a processor
  long wakeUps = 0;             ///< times a thread left the processor to wait for something
};

/// Figures of a running process since its start.
ProcessFigures figuresOf(pid_t process);

/// Memory of a running process in mebibytes.
struct MemoryFigures {
  double resident = 0;      ///< all pages in memory, those shared with others too
  double proportional = 0;  ///< each shared page divided by its users
  double own = 0;           ///< pages of its own
};

MemoryFigures memoryOf(pid_t process);

}  // namespace vorrin::bench
