#pragma once

#include <ApplicationServices/ApplicationServices.h>

#include <memory>
#include <type_traits>

namespace vorrin {

struct CoreFoundationRelease {
  void operator()(const void* object) const { CFRelease(object); }
};

/// Owns one reference to a Core Foundation object: what a function with Create or Copy in its name
/// gave. `Reference` is the C type, such as `CGEventRef`.
template <typename Reference>
using CoreFoundationHandle =
    std::unique_ptr<std::remove_pointer_t<Reference>, CoreFoundationRelease>;

}  // namespace vorrin
