// The least that a program with such a frame does until it is seen.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(960, 640);
    window.setCentralWidget(new QMdiArea(&window));
    window.show();
    return QApplication::exec();
}
