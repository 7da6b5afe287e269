#include "platform/linux/input/input_way.h"

#include <cstdio>
#include <cstdlib>

namespace vorrin {
namespace {

std::string_view variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : std::string_view(value);
}

const InputChoice& presentChoice() {
  static const InputChoice choice = chooseInput();
  return choice;
}

}  // namespace

InputChoice chooseInput() {
  const auto wish = variable("VORRIN_INPUT");
  if (wish == "x11") return {InputWay::x11, "VORRIN_INPUT says so"};
  if (wish == "helper") return {InputWay::helper, "VORRIN_INPUT says so"};
  if (!variable("WAYLAND_DISPLAY").empty() || variable("XDG_SESSION_TYPE") == "wayland") {
    return {InputWay::helper, "this is a Wayland session"};
  }
  if (!variable("DISPLAY").empty()) return {InputWay::x11, "this is an X11 session"};
  return {InputWay::helper, "there is neither an X server nor a Wayland compositor"};
}

InputWay inputWay() {
  return presentChoice().way;
}

void sayInputWay() {
  static const int said =
      std::fprintf(stderr, "vorrin: keyboard and clicks through %s, because %.*s\n",
                   inputWay() == InputWay::x11 ? "the X server" : "the input helper",
                   static_cast<int>(presentChoice().reason.size()), presentChoice().reason.data());
  static_cast<void>(said);
}

}  // namespace vorrin
