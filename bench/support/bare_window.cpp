// The least that a program with such a frame does until it is seen; with any argument, one that has
// a menu, a status bar and so text and fonts.

#include <QApplication>
#include <QMainWindow>
#include <QMdiArea>
#include <QMenuBar>
#include <QStatusBar>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    QMainWindow window;
    window.resize(960, 640);
    window.setCentralWidget(new QMdiArea(&window));
    if (argc > 1) {
        window.menuBar()->addMenu(QStringLiteral("File"))->addAction(QStringLiteral("Exit"));
        window.statusBar()->showMessage(QStringLiteral("Ready"));
    }
    window.show();
    return QApplication::exec();
}
