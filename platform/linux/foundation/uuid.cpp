#include "platform/uuid.h"

#include <QUuid>

namespace vorrin {

std::string newUuidString() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper().toStdString();
}

}  // namespace vorrin
