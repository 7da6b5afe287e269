#include "platform/linux/widgets/main_menu.h"

#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>

#include "platform/button.h"
#include "platform/linux/foundation/native_text.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

namespace {

std::vector<Menu>& mainMenu() {
  static std::vector<Menu> menus;
  return menus;
}

}  // namespace

QList<QKeySequence> keySequences(const MenuItem& item) {
  const char letter = item.keyEquivalent.key;
  if (letter == 0) return {};
  const auto key = static_cast<Qt::Key>(Qt::Key_A + (letter - 'a'));
  if (!item.keyEquivalent.control) return {QKeySequence(Qt::CTRL | key)};
  const QKeySequence both(Qt::CTRL | Qt::META | key);
  // The key that switches to the full screen everywhere else on this system is the one to show.
  if (letter == 'f') return {QKeySequence(Qt::Key_F11), both};
  return {both};
}

void rememberMainMenu(const std::vector<Menu>& menus) {
  mainMenu() = menus;
  for (WindowWidget* window : windows()) window->showMainMenu();
}

void addMainMenu(QMenuBar& bar) {
  for (const Menu& menu : mainMenu()) {
    const QString title =
        menu.title.empty() ? QGuiApplication::applicationDisplayName() : nativeText(menu.title);
    QMenu* native = bar.addMenu(title);
    for (const MenuItem& item : menu.items) {
      QAction* action = native->addAction(nativeText(item.title));
      action->setShortcuts(keySequences(item));
      QObject::connect(action, &QAction::triggered, native, [perform = item.action.perform] {
        if (perform) perform(Button());
      });
    }
  }
}

}  // namespace vorrin
