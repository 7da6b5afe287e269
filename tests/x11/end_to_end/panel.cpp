#include "panel.h"

#include <cstdlib>

#include "keys.h"

namespace vorrin::x11_tests {

bool Panel::isVisited(Control control) const {
  return control != Control::presetList || hasPresets_;
}

void Panel::focus(Control control) {
  const int target = static_cast<int>(control);
  while (current_ < target) {
    if (isVisited(static_cast<Control>(++current_))) user_.tap(keys::tab);
  }
  while (current_ > target) {
    if (!isVisited(static_cast<Control>(--current_))) continue;
    user_.pressEvdev(modifier_keys::shift);
    user_.tap(keys::tab);
    user_.releaseEvdev(modifier_keys::shift);
  }
}

void Panel::push(Control control) {
  focus(control);
  user_.tap(keys::space);
}

void Panel::enter(Control field, std::string_view text) {
  focus(field);
  user_.pressEvdev(modifier_keys::control);
  user_.tap(keys::a);
  user_.releaseEvdev(modifier_keys::control);
  user_.type(text);
}

void Panel::choose(Control menu, int steps) {
  focus(menu);
  for (int step = 0; step < std::abs(steps); ++step) user_.tap(steps > 0 ? keys::down : keys::up);
}

}  // namespace vorrin::x11_tests
