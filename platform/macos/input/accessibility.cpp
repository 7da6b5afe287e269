#include "platform/accessibility.h"

#include "platform/macos/input/core_foundation_handle.h"
#include "platform/macos/input/trust.h"

namespace vorrin {

bool isProcessTrusted() {
  return noteTrust(AXIsProcessTrusted() != 0);
}

bool isProcessTrustedWithPrompt() {
  watchGrants();
  // Nothing is left to ask for where a tap has shown a grant that the system does not know of.
  if (const Trust known = knownTrust(); known.trusted && !known.told) return true;
  const void* key = kAXTrustedCheckOptionPrompt;
  const void* value = kCFBooleanTrue;
  const CoreFoundationHandle<CFDictionaryRef> options(
      CFDictionaryCreate(kCFAllocatorDefault, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks,
                         &kCFTypeDictionaryValueCallBacks));
  const bool told = AXIsProcessTrustedWithOptions(options.get()) != 0;
  return noteTrust(told) || (told && confirmTrust());
}

}  // namespace vorrin
