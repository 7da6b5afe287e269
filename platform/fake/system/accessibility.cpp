#include "platform/accessibility.h"

#include "platform/fake/system/fake_system.h"

namespace vorrin {

bool isProcessTrusted() {
  return fake::system().trusted;
}

bool isProcessTrustedWithPrompt() {
  ++fake::system().promptingQueries;
  return fake::system().trusted;
}

}  // namespace vorrin
