#pragma once

#include <string_view>

namespace vorrin {

/// The two ways to the keyboard on Linux.
enum class InputWay {
  x11,     ///< the X server's own extensions
  helper,  ///< the privileged helper, below the session
};

/// What the choice depends on; empty for variables that are not set.
struct InputEnvironment {
  // GCC takes a member without one for forgotten where others are named.
  // NOLINTBEGIN(readability-redundant-member-init)
  std::string_view wish = {};  ///< VORRIN_INPUT: "x11", "helper", or anything else for neither
  std::string_view sessionType = {};  ///< XDG_SESSION_TYPE
  std::string_view wayland = {};      ///< WAYLAND_DISPLAY
  std::string_view display = {};      ///< DISPLAY
  // NOLINTEND(readability-redundant-member-init)
};

struct InputChoice {
  InputWay way = InputWay::x11;
  std::string_view reason;  ///< ends the sentence "... because"
};

/// The user's wish, else what the session offers. An X server within a Wayland session shows no
/// keys but its own windows', so it does not count.
InputChoice chooseInput(const InputEnvironment& environment);

/// The way of this process, chosen at the first call.
InputWay inputWay();

/// Says on standard error, once, which way it is and why.
void sayInputWay();

}  // namespace vorrin
