// A window that says what it receives, a line each: "key NUMBER down|up" with the kernel's number,
// "click down|up", "active" and "inactive". It is small, or covers the screen with --maximized.

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>
#include <cstdio>

namespace {

class LoggingWindow : public QWidget {
 protected:
  // Wayland and X11 number keys by the kernel's code and 8.
  void keyPressEvent(QKeyEvent* event) override { log(*event, "down"); }
  void keyReleaseEvent(QKeyEvent* event) override { log(*event, "up"); }
  void mousePressEvent(QMouseEvent*) override { say("click down"); }
  void mouseDoubleClickEvent(QMouseEvent*) override { say("click down"); }
  void mouseReleaseEvent(QMouseEvent*) override { say("click up"); }
  bool focusNextPrevChild(bool) override { return false; }
  void changeEvent(QEvent* event) override {
    if (event->type() == QEvent::ActivationChange) say(isActiveWindow() ? "active" : "inactive");
  }

 private:
  static void say(const char* line) { std::printf("%s\n", line); }
  static void log(const QKeyEvent& event, const char* what) {
    if (!event.isAutoRepeat()) std::printf("key %u %s\n", event.nativeScanCode() - 8, what);
  }
};

}  // namespace

int main(int count, char** arguments) {
  std::setvbuf(stdout, nullptr, _IOLBF, 0);
  QApplication application(count, arguments);
  QGuiApplication::setDesktopFileName("logging-client");
  LoggingWindow window;
  window.setWindowTitle("Logging client");
  if (application.arguments().contains("--maximized")) {
    window.showMaximized();
  } else {
    window.setFixedSize(500, 400);
    window.show();
  }
  return QApplication::exec();
}
