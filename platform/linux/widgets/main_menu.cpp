#include "platform/linux/widgets/main_menu.h"

#include <QMenu>
#include <QMenuBar>
#include <algorithm>

#include "platform/button.h"
#include "platform/linux/foundation/native_text.h"

namespace vorrin {

namespace {

std::vector<Menu>& mainMenu() {
  static std::vector<Menu> menus;
  return menus;
}

/// The title with its first letter that is not among `taken` for the user to choose it by.
QString withMnemonic(QString title, QString& taken) {
  const auto isFree = [&taken](QChar letter) {
    return letter.isLetter() && !taken.contains(letter, Qt::CaseInsensitive);
  };
  const auto* const letter = std::find_if(title.cbegin(), title.cend(), isFree);
  if (letter == title.cend()) return title;
  taken.append(*letter);
  return title.insert(letter - title.cbegin(), QLatin1Char('&'));
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
}

void addItems(QMenu& native, const Menu& menu) {
  QString taken;
  for (const MenuItem& item : menu.items) {
    QAction* action = native.addAction(withMnemonic(nativeText(item.title), taken));
    action->setShortcuts(keySequences(item));
    QObject::connect(action, &QAction::triggered, &native, [perform = item.action.perform] {
      if (perform) perform(Button());
    });
  }
}

void addMainMenu(QMenuBar& bar) {
  QString taken;
  // The application's own comes last to a letter: everywhere else Alt+V is the view.
  for (auto menu = mainMenu().rbegin(); menu != mainMenu().rend(); ++menu) {
    auto* native = new QMenu(withMnemonic(nativeText(menu->title), taken), &bar);
    native->setAttribute(Qt::WA_TranslucentBackground);
    bar.insertMenu(bar.actions().value(0), native);
    addItems(*native, *menu);
  }
}

}  // namespace vorrin
