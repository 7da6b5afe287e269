#pragma once

#include <QPushButton>
#include <QWidget>

#include "driver.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin::driver {

/// Clicks in the middle of it, wherever that click then goes.
void click(QWidget& widget);

/// The sheet that waits for an answer, null when there is none.
[[nodiscard]] Sheet* sheetOf(const Window& window);
/// The same when there has to be one, which has the keyboard then.
[[nodiscard]] Sheet& shownSheet(const Window& window);
[[nodiscard]] QPushButton& sheetButton(const Window& window, const std::string& title);

}  // namespace vorrin::driver
