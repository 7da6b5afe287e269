#include "platform/text.h"

#include <QCollator>
#include <QLocale>
#include <algorithm>
#include <utility>

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

void localizedStandardSort(std::vector<std::string>& names) {
  static const QCollator order = nameOrder();
  // To compare two names costs nearly as much as such a key, and there are ten times more pairs.
  std::vector<std::pair<QCollatorSortKey, std::string>> keyed;
  keyed.reserve(names.size());
  for (auto& name : names) keyed.emplace_back(order.sortKey(nativeText(name)), std::move(name));
  std::stable_sort(keyed.begin(), keyed.end(), [](const auto& left, const auto& right) {
    return left.first.compare(right.first) < 0;
  });
  std::transform(keyed.begin(), keyed.end(), names.begin(),
                 [](auto& entry) { return std::move(entry.second); });
}

}  // namespace vorrin
