#include "platform/linux/input/helper/click_rule.h"

#include <sys/stat.h>

#include <cstdlib>
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

std::filesystem::path variable(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

}  // namespace

ClickRule clickRule(const std::filesystem::path& rule, const std::filesystem::path& desktop) {
  const auto rulePlaced = placed(rule);
  const auto began = placed(desktop);
  if (!rulePlaced) return ClickRule::missing;
  return began && *began < *rulePlaced ? ClickRule::installedLater : ClickRule::inEffect;
}

ClickRule clickRule() {
  return clickRule("/usr/share/libinput/60-vorrin.quirks",
                   variable("XDG_RUNTIME_DIR") / variable("WAYLAND_DISPLAY"));
}

}  // namespace vorrin::helper
