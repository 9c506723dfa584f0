// A Qt form of two fields, a password and a name with a list of completions. Return prints both.

#include <QApplication>
#include <QCompleter>
#include <QLineEdit>
#include <QVBoxLayout>
#include <QWidget>
#include <iostream>

int main(int argc, char** argv) {
  QApplication application(argc, argv);
  QWidget window;
  QVBoxLayout column(&window);
  QLineEdit password;
  password.setEchoMode(QLineEdit::Password);
  column.addWidget(&password);
  QLineEdit name;
  QCompleter completions(QStringList{"hello kitty", "hello there", "привет мир", "привет всем"});
  name.setCompleter(&completions);
  column.addWidget(&name);
  const auto print = [&] {
    std::cout << password.text().toStdString() << '|' << name.text().toStdString() << std::endl;
    QApplication::quit();
  };
  QObject::connect(&name, &QLineEdit::returnPressed, print);
  window.show();
  return QApplication::exec();
}
