// Vorrin itself, saying on its standard output whenever the line at the bottom of its
// window changes: "status TEXT". Each line of its standard input is the title of a button, in the
// window or its sheet, that is clicked as soon as it can be.

#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QSocketNotifier>
#include <array>
#include <cstdio>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "app/program_values.h"
#include "platform/application.h"
#include "platform/run_loop.h"
#include "platform/timer.h"
#include "ui/app.h"

namespace {

/// The titles that came in and were not clicked yet.
class Clicks {
 public:
  Clicks() {
    QObject::connect(&input_, &QSocketNotifier::activated, &input_, [this] { read(); });
  }

  void clickNext() {
    if (titles_.empty()) return;
    for (QWidget* const widget : QApplication::allWidgets()) {
      auto* const button = qobject_cast<QAbstractButton*>(widget);
      if (button == nullptr || button->text().toStdString() != titles_.front()) continue;
      if (!button->isVisible() || !button->isEnabled()) continue;
      titles_.pop_front();
      return button->click();
    }
  }

 private:
  void read() {
    std::array<char, 256> buffer{};
    const auto size = ::read(STDIN_FILENO, buffer.data(), buffer.size());
    if (size <= 0) return input_.setEnabled(false);
    for (const char letter : std::string(buffer.data(), static_cast<std::size_t>(size))) {
      if (letter == '\n') {
        titles_.push_back(std::exchange(unfinished_, {}));
      } else {
        unfinished_ += letter;
      }
    }
  }

  QSocketNotifier input_{STDIN_FILENO, QSocketNotifier::Read};
  std::string unfinished_;
  std::deque<std::string> titles_;
};

}  // namespace

int main(int count, char** arguments) {
  vorrin::readArguments(count, arguments);
  vorrin::Application application(count, arguments);
  const auto app = std::make_shared<vorrin::App>(std::vector<std::string>{arguments[0]}, nullptr);
  application.setDelegate(
      {.didFinishLaunching = [&] { app->applicationDidFinishLaunching(); },
       .shouldHandleReopen =
           [&](bool visible) { return app->applicationShouldHandleReopen(visible); },
       .stopAll = &vorrin::App::stopAll,
       .shouldTerminateAfterLastWindowClosed =
           &vorrin::App::applicationShouldTerminateAfterLastWindowClosed,
       .willTerminate = &vorrin::App::applicationWillTerminate});
  Clicks clicks;
  std::string last;
  const vorrin::Timer watch(0.05, [&] {
    clicks.clickNext();
    const auto text = app->status.text();
    if (text == last) return;
    last = text;
    std::printf("status %s\n", text.c_str());
    std::fflush(stdout);
  });
  vorrin::RunLoop::main().add(watch, vorrin::RunLoopMode::common);
  return application.run();
}
