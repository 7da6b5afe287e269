#pragma once

#include <QKeySequence>
#include <QList>
#include <vector>

#include "platform/menu.h"

class QMenuBar;

namespace vorrin {

/// The keys that choose an item. Command is the Control key here, as users of this system expect;
/// where an equivalent wants both, Command is the Meta key instead.
QList<QKeySequence> keySequences(const MenuItem& item);

/// Remembers the main menu for the windows to come.
void rememberMainMenu(const std::vector<Menu>& menus);

/// Puts the main menu into `bar`.
void addMainMenu(QMenuBar& bar);

}  // namespace vorrin
