#include "platform/alert.h"

#include <algorithm>

#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin {

void beginSheet(const Alert& alert, const Window& window, std::function<void(int)> completion) {
  const auto cancel = std::find(alert.buttons.begin(), alert.buttons.end(), "Cancel");
  std::optional<int> escapeAnswer;
  if (cancel != alert.buttons.end()) {
    escapeAnswer = static_cast<int>(cancel - alert.buttons.begin());
  }
  presentSheet(alert, escapeAnswer, widgetOf(window), std::move(completion));
}

}  // namespace vorrin
