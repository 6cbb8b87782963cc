// The least that a program with a Qt window can be, for comparison.
#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QMainWindow window;
  window.resize(600, 400);
  window.show();
  return QApplication::exec();
}
