#pragma once

// XCB's XKB, a member of which is named with a word of this language.
#if defined(__clang__)
#pragma clang diagnostic ignored "-Wkeyword-macro"
#endif
#define explicit explicitly
#include <xcb/xkb.h>
#undef explicit
