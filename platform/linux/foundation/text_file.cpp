#include "platform/text_file.h"

#include <pwd.h>
#include <unistd.h>

#include <QFileInfo>
#include <QSaveFile>

#include "platform/portable/utf8.h"

namespace vorrin {

std::filesystem::path homeDirectory() {
  const QByteArray home = qgetenv("HOME");
  if (home.startsWith('/')) return home.toStdString();
  const passwd* const account = ::getpwuid(::getuid());
  return account != nullptr ? account->pw_dir : "/";
}

std::optional<std::string> readTextFile(const std::filesystem::path& path) {
  QFile file(QFile::decodeName(path.c_str()));
  // A pipe at the path must not hold the caller up.
  if (!QFileInfo(file).isFile() || !file.open(QIODevice::ReadOnly)) return {};
  std::string text = file.readAll().toStdString();
  if (file.error() != QFile::NoError || !isUtf8(text)) return {};
  return text;
}

bool writeTextFileAtomically(const std::filesystem::path& path, std::string_view text) {
  if (std::error_code error; std::filesystem::is_other(path, error)) return false;
  QSaveFile file(QFile::decodeName(path.c_str()));
  // With a buffer, Qt 6.4 puts an empty file in place when a short text does not fit on the disk.
  return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
         file.write(text.data(), static_cast<qint64>(text.size())) ==
             static_cast<qint64>(text.size()) &&
         file.commit();
}

}  // namespace vorrin
