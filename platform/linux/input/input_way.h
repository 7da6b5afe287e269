#pragma once

#include <string_view>

namespace vorrin {

/// The two ways to the keyboard on Linux.
enum class InputWay {
  x11,     ///< the X server's own extensions
  helper,  ///< the privileged helper, below the session
};

struct InputChoice {
  InputWay way = InputWay::x11;
  std::string_view reason;  ///< ends the sentence "... because"
};

/// The user's wish (VORRIN_INPUT), else what the session offers, by the environment variables. An X
/// server within a Wayland session shows no keys but its own windows', so it does not count.
InputChoice chooseInput();

/// The way of this process, chosen at the first call.
InputWay inputWay();

/// Says on standard error, once, which way it is and why.
void sayInputWay();

}  // namespace vorrin
