#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace vorrin {

/// UTF-8 as an NSString; bytes that are not UTF-8 become replacement characters.
NSString* nsString(std::string_view text);

/// The text as UTF-8; empty for nil.
std::string standardString(NSString* text);

}  // namespace vorrin
