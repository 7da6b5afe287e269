#include "platform/linux/input/helper/click_rule.h"

#include <sys/stat.h>

#include <QByteArray>
#include <optional>
#include <utility>

namespace vorrin::helper {
namespace {

using Time = std::pair<time_t, long>;

/// When the file came to its place. Its contents may be older: a package brings their time along.
std::optional<Time> placed(const std::filesystem::path& file) {
  struct stat status {};
  if (::stat(file.c_str(), &status) != 0) return std::nullopt;
  return Time(status.st_ctim.tv_sec, status.st_ctim.tv_nsec);
}

}  // namespace

ClickRule clickRule(const std::filesystem::path& rule, const std::filesystem::path& desktop) {
  const auto rulePlaced = placed(rule);
  const auto began = placed(desktop);
  if (!rulePlaced) return ClickRule::missing;
  return began && *began < *rulePlaced ? ClickRule::installedLater : ClickRule::inEffect;
}

ClickRule clickRule() {
  const std::filesystem::path folder = qgetenv("XDG_RUNTIME_DIR").toStdString();
  return clickRule("/usr/share/libinput/60-vorrin.quirks",
                   folder / qgetenv("WAYLAND_DISPLAY").toStdString());
}

}  // namespace vorrin::helper
