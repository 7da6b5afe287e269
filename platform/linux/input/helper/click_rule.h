#pragma once

#include <filesystem>

namespace vorrin::helper {

/// Whether the desktop lets clicks through that follow each other closely.
enum class ClickRule {
  inEffect,
  installedLater,  ///< after the desktop began, which reads such rules then
  missing,
};

/// `rule`: the file that libinput reads; `desktop`: the compositor's socket, made when it began.
ClickRule clickRule(const std::filesystem::path& rule, const std::filesystem::path& desktop);

/// That of this machine and this session.
ClickRule clickRule();

}  // namespace vorrin::helper
