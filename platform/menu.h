#pragma once

#include <string>
#include <vector>

#include "platform/control.h"

namespace vorrin {

/// The keys that choose a menu item: a lower-case letter with Command, and Control as well if
/// asked. Where the keyboard has no Command key its place is taken as the system's users expect.
struct KeyEquivalent {
  char key = 0;
  bool control = false;
};

struct MenuItem {
  std::string title;
  Action action;
  KeyEquivalent keyEquivalent;
};

struct Menu {
  std::string title;
  std::vector<MenuItem> items;
};

}  // namespace vorrin
