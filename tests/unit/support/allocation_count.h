#pragma once

namespace vorrin::test {

/// How many objects the program has made on the heap so far. Whoever links this has all counted.
long allocationCount();

}  // namespace vorrin::test
