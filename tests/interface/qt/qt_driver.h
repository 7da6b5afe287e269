#pragma once

#include <QPushButton>
#include <QWidget>
#include <QWindow>

#include "driver.h"
#include "platform/linux/widgets/native_view.h"
#include "platform/linux/widgets/sheet.h"
#include "platform/linux/widgets/window_widget.h"

namespace vorrin::driver {

/// Clicks in the middle of it, wherever that click then goes.
void click(QWidget& widget);
/// Clicks there, long after whatever happened before.
void click(QWindow& window, QPoint place);
/// The clock that events are stamped by.
[[nodiscard]] int monotonicMilliseconds();

/// The sheet that waits for an answer, null when there is none.
[[nodiscard]] Sheet* sheetOf(const Window& window);
/// The same when there has to be one.
[[nodiscard]] Sheet& shownSheet(const Window& window);
[[nodiscard]] QPushButton& sheetButton(const Window& window, const std::string& title);

}  // namespace vorrin::driver
