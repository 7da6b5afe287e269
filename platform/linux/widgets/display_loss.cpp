#include "platform/linux/widgets/display_loss.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace vorrin {

DisplayLoss::DisplayLoss(std::function<void()> lost) {
  const auto* const x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
  // The toolkit's offscreen mode passes for X11 too, without a connection.
  if (x11 == nullptr || x11->connection() == nullptr) return;
  // An X server sends nothing out of band, so this wakes up for the connection's end alone, in the
  // same round of the main loop in which the library would end the process.
  notifier_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(x11->connection()),
                                                QSocketNotifier::Exception);
  QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                   [lost = std::move(lost)] {
                     lost();
                     std::fputs("vorrin: the X server is gone · start Vorrin again\n", stderr);
                     // What is left to destroy belongs to a display that is gone.
                     std::_Exit(EXIT_FAILURE);
                   });
}

}  // namespace vorrin
