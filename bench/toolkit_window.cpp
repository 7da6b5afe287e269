// An empty window of the toolkit, as large as Vorrin's and set up alike: what a start and memory
// cost before anything is Vorrin's. With a text it shows a line, for which fonts have to be found.
// usage: vorrin_toolkit_window [TEXT]
#include <QApplication>
#include <QLabel>
#include <QWidget>

int main(int argumentCount, char** arguments) {
  qputenv("QT_XCB_GL_INTEGRATION", "none");
  qputenv("QT_NO_GLIB", "1");
  qputenv("QT_QPA_PLATFORMTHEME", "generic");
  const QApplication application(argumentCount, arguments);
  QWidget window;
  window.setWindowTitle("toolkit");
  window.resize(580, 700);
  if (argumentCount > 1) new QLabel(arguments[1], &window);
  window.show();
  return QApplication::exec();
}
