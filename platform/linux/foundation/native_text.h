#pragma once

#include <QString>
#include <string_view>

#include "platform/portable/utf8.h"

namespace vorrin {

/// `text` as Qt has it. Qt's own conversions drop a leading U+FEFF.
inline QString nativeText(std::string_view text) {
  return QStringView(utf16(text)).toString();
}

}  // namespace vorrin
