#include "platform/accessibility.h"

#include "platform/macos/input/core_foundation_handle.h"

namespace vorrin {

bool isProcessTrusted() {
  return AXIsProcessTrusted() != 0;
}

bool isProcessTrustedWithPrompt() {
  const void* key = kAXTrustedCheckOptionPrompt;
  const void* value = kCFBooleanTrue;
  const CoreFoundationHandle<CFDictionaryRef> options(
      CFDictionaryCreate(kCFAllocatorDefault, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks,
                         &kCFTypeDictionaryValueCallBacks));
  return AXIsProcessTrustedWithOptions(options.get()) != 0;
}

}  // namespace vorrin
