#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace vorrin {

inline QString nativeText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace vorrin
