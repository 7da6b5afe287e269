// An empty window of the toolkit, as large as Vorrin's and set up alike: what a start and memory
// cost before anything is Vorrin's. usage: vorrin_toolkit_window
#include <QApplication>
#include <QWidget>

int main(int argumentCount, char** arguments) {
  qputenv("QT_XCB_GL_INTEGRATION", "none");
  qputenv("QT_NO_GLIB", "1");
  qputenv("QT_QPA_PLATFORMTHEME", "generic");
  const QApplication application(argumentCount, arguments);
  QWidget window;
  window.setWindowTitle("toolkit");
  window.resize(580, 700);
  window.show();
  return QApplication::exec();
}
