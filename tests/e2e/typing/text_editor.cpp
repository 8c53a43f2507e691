// A Qt editor with a menu bar, for typing into. Answers each line on stdin with its text: the length in bytes, a
// newline, the bytes; the line "clear" empties it first.

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QSocketNotifier>

#include <cstdio>
#include <iostream>
#include <string>

using namespace Qt::StringLiterals;

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  QMainWindow window;
  window.setWindowTitle(u"editor"_s);
  window.menuBar()->addMenu(u"&File"_s)->addAction(u"&Close"_s);
  auto* text = new QPlainTextEdit;
  window.setCentralWidget(text);
  window.resize(800, 500);

  QSocketNotifier input(fileno(stdin), QSocketNotifier::Read);
  QObject::connect(&input, &QSocketNotifier::activated, [&] {
    std::string line;
    if (!std::getline(std::cin, line)) return QApplication::quit();
    if (line == "clear") text->clear();
    const QByteArray bytes = text->toPlainText().toUtf8();
    std::cout << bytes.size() << '\n';
    std::cout.write(bytes.constData(), bytes.size()).flush();
  });
  window.show();
  text->setFocus();
  return QApplication::exec();
}
