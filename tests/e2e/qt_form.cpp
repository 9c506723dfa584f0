// A Qt form of two fields, a password and a name with completions: in a list, or with the argument
// "inline" behind what is typed. Return prints both.

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
  password.setAccessibleName("password");
  column.addWidget(&password);
  QLineEdit name;
  name.setAccessibleName("name");
  const auto isInline = argc > 1;
  QCompleter completions(
      isInline ? QStringList{"ghbdtn!"}
               : QStringList{"hello kitty", "hello there", "привет мир", "привет всем"});
  if (isInline) completions.setCompletionMode(QCompleter::InlineCompletion);
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
