// A plain text editor of Qt 6.

#include <QApplication>
#include <QPlainTextEdit>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QPlainTextEdit editor;
  editor.resize(600, 400);
  editor.show();
  return QApplication::exec();
}
