#include "platform/application.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <QApplication>
#include <QTest>
#include <QTimer>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <vector>

#include "platform/alert.h"
#include "platform/linux/widgets/window_widget.h"
#include "platform/window.h"
#include "private_home.h"

// Each test runs an application of its own in a process of its own, which says on standard error
// what it was told.

namespace vorrin {
namespace {

void say(const char* text) {
  std::fprintf(stderr, "%s\n", text);
}

/// Runs an application that does `launched` when it has finished launching; its exit status is the
/// process's.
[[noreturn]] void runApplication(const std::function<void()>& launched,
                                 std::vector<std::string> arguments = {"vorrin"}) {
  std::vector<char*> values;
  for (std::string& argument : arguments) values.push_back(argument.data());
  int count = static_cast<int>(values.size());
  values.push_back(nullptr);
  int status = 0;
  {
    Application application(count, values.data());
    application.setDelegate({.didFinishLaunching =
                                 [&launched] {
                                   say("launched");
                                   launched();
                                 },
                             .shouldHandleReopen = nullptr,
                             .stopAll = nullptr,
                             .shouldTerminateAfterLastWindowClosed =
                                 [] {
                                   say("last window closed");
                                   return true;
                                 },
                             .willTerminate = [] { say("will terminate"); }});
    status = application.run();
  }
  std::_Exit(status);
}

class ApplicationProcess : public testing::Test {
 protected:
  ApplicationProcess() {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    setenv("XDG_RUNTIME_DIR", home_.path.c_str(), 1);
    // A process that ends inside a test leaves its own home behind; it shall lie in this one.
    setenv("TMPDIR", home_.path.c_str(), 1);
    unsetenv("DBUS_SESSION_BUS_ADDRESS");
    unsetenv("DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
  }
  ~ApplicationProcess() override { unsetenv("TMPDIR"); }

  PrivateHome home_;
};

TEST_F(ApplicationProcess, the_delegate_is_told_once_however_often_and_by_whom_it_is_ended) {
  const std::vector<std::function<void()>> ways = {[] { Application::terminate(); },
                                                   [] { QApplication::quit(); },
                                                   [] {
                                                     Application::terminate();
                                                     Application::terminate();
                                                     QApplication::quit();
                                                   }};
  for (const auto& end : ways) {
    EXPECT_EXIT(runApplication(end), testing::ExitedWithCode(0), "^launched\nwill terminate\n$");
  }
}

TEST_F(ApplicationProcess, closing_the_last_window_ends_it) {
  EXPECT_EXIT(
      {
        Window window;
        runApplication([&window] {
          window = Window::make({300, 200}, window_style::titled | window_style::closable);
          window.orderFront();
          QTimer::singleShot(0, [&window] { widgetOf(window).close(); });
        });
      },
      testing::ExitedWithCode(0), "^launched\nlast window closed\nwill terminate\n$");
}

TEST_F(ApplicationProcess,
       every_way_to_end_it_ends_it_while_a_question_is_open_and_answers_nothing) {
  const std::vector<std::function<void(WindowWidget&)>> ways = {
      [](WindowWidget& window) { window.windowHandle()->close(); },
      [](WindowWidget& window) {
        QTest::keyClick(window.windowHandle(), Qt::Key_Q, Qt::ControlModifier);
      },
      [](WindowWidget& window) {
        QTest::keyClick(window.windowHandle(), Qt::Key_F10);
        QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Return);
      }};
  for (const auto& end : ways) {
    EXPECT_EXIT(
        {
          Window window;
          runApplication([&] {
            Application::setMainMenu({{"Vorrin",
                                       {{"Quit",
                                         {"", [](const Button&) { Application::terminate(); }},
                                         {.key = 'q'}}}}});
            window = Window::make({300, 200}, window_style::titled | window_style::closable);
            window.orderFront();
            beginSheet({"Sure?", "", {"Yes", "Cancel"}}, window, [](int) { std::_Exit(7); });
            QTimer::singleShot(0, [&] { end(widgetOf(window)); });
            // Playing a key takes the wake-up away that ending gives the main loop.
            QTimer::singleShot(100, [] {});
          });
        },
        testing::ExitedWithCode(0), "will terminate\n$");
  }
}

TEST_F(ApplicationProcess, a_window_is_never_higher_than_the_screen_and_as_high_as_it_may_be) {
  const auto screen = home_.path / "screen.json";
  std::ofstream(screen) << R"({"screens": [{"name": "small", "x": 0, "y": 0, "width": 640,
      "height": 480, "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})";
  setenv("QT_QPA_PLATFORM", ("offscreen:configfile=" + screen.string()).c_str(), 1);
  EXPECT_EXIT(runApplication([] {
                const Window window = Window::make({580, 700}, window_style::titled);
                window.setContentMinSize({580, 700});
                window.center();
                window.orderFront();
                const QRect shown = widgetOf(window).frameGeometry();
                const bool fits = QRect(0, 0, 640, 480).contains(shown) && shown.height() > 400;
                say(fits ? "fits" : "does not fit");
                Application::terminate();
              }),
              testing::ExitedWithCode(0), "\nfits\nwill terminate\n$");
}

TEST_F(ApplicationProcess, signals_that_ask_to_end_end_it_properly) {
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
    EXPECT_EXIT(
        {
          // The tests themselves may have been started with it ignored.
          std::signal(signal, SIG_DFL);
          runApplication([signal] { kill(getpid(), signal); });
        },
        testing::ExitedWithCode(0), "^launched\nwill terminate\n$");
  }
}

TEST_F(ApplicationProcess, a_second_signal_ends_it_even_when_it_hangs) {
  EXPECT_EXIT(runApplication([] {
                kill(getpid(), SIGTERM);
                kill(getpid(), SIGTERM);
              }),
              testing::KilledBySignal(SIGTERM), "^launched\n$");
}

TEST_F(ApplicationProcess, a_signal_that_was_ignored_at_the_start_stays_ignored) {
  EXPECT_EXIT(
      {
        std::signal(SIGHUP, SIG_IGN);
        runApplication([] {
          kill(getpid(), SIGHUP);
          QTimer::singleShot(50, [] {
            say("still here");
            Application::terminate();
          });
        });
      },
      testing::ExitedWithCode(0), "^launched\nstill here\nwill terminate\n$");
}

TEST_F(ApplicationProcess,
       without_a_display_or_with_one_that_does_not_answer_it_says_so_in_one_line_and_fails) {
  unsetenv("QT_QPA_PLATFORM");
  EXPECT_EXIT(runApplication([] {}), testing::ExitedWithCode(1),
              "^vorrin: no display · start Vorrin from within a graphical session\n$");
  setenv("DISPLAY", ":4095", 1);
  for (const char* locale : {"C.UTF-8", "C"}) {
    setenv("LC_ALL", locale, 1);
    EXPECT_EXIT(runApplication([] {}), testing::ExitedWithCode(1),
                "^vorrin: no display · could not connect to display :4095\n$");
  }
}

TEST_F(ApplicationProcess, arguments_meant_for_the_widget_library_are_ignored) {
  EXPECT_EXIT(
      runApplication([] { Application::terminate(); },
                     {"vorrin", "-platform", "nonsense", "--style", "none", "-qmljsdebugger"}),
      testing::ExitedWithCode(0), "^launched\nwill terminate\n$");
}

}  // namespace
}  // namespace vorrin
