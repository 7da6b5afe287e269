// Starts a program for which a directory, with all that is in it, can only be read; also by the
// administrator.
// usage: vorrin_with_read_only_directory DIRECTORY PROGRAM [ARGUMENT...]
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

#include "own_mounts.h"

int main(int count, char** arguments) {
  if (count < 3) return EXIT_FAILURE;
  vorrin::faults::OwnMounts mounts;
  if (mounts.makeReadOnly(arguments[1])) {
    ::execv(arguments[2], arguments + 2);  // which the mounts outlive
  }
  std::perror("vorrin_with_read_only_directory");
  return EXIT_FAILURE;
}
