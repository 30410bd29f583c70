// Links the toolkit and does nothing.

#include <QCoreApplication>
#include <QImage>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    return QImage().width();
}
