#include "bridge/status_file.h"

#include "bridge/program_engine.h"
#include "platform/accessibility.h"
#include "platform/text_file.h"

namespace vorrin {
namespace {

std::string flag(bool value) {
  return value ? "true" : "false";
}

}  // namespace

std::filesystem::path statusFilePath() {
  return homeDirectory() / "Library" / "Logs" / "Vorrin-status.txt";
}

std::string statusLine(bool accessibility, bool eventTap, bool ready) {
  return "accessibility=" + flag(accessibility) + " eventTap=" + flag(eventTap) +
         " ready=" + flag(ready) + "\n";
}

void updateStatusFile(bool ready) {
  const std::string line = statusLine(isProcessTrusted(), engine.tap.has_value(), ready);
  const auto path = statusFilePath();
  if (readTextFile(path) == line) return;
  // Whoever reads the file sees a failure by its age; the window does not depend on it.
  static_cast<void>(writeTextFileAtomically(path, line));
}

}  // namespace vorrin
