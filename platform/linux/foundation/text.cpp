#include "platform/text.h"

#include <QCollator>
#include <QLocale>

#include "platform/linux/foundation/native_text.h"

namespace vorrin {

namespace {

/// The order of names in the user's language.
QCollator nameOrder() {
  const QLocale language = QLocale::system().collation();
  // In the C locale Qt compares code points, which is no order for names.
  QCollator order(language.language() == QLocale::C ? QLocale(QLocale::English) : language);
  order.setNumericMode(true);
  return order;
}

}  // namespace

std::weak_ordering localizedStandardCompare(std::string_view left, std::string_view right) {
  static const QCollator order = nameOrder();
  return order.compare(nativeText(left), nativeText(right)) <=> 0;
}

}  // namespace vorrin
