#include "main/MainWindow.h"

#include <QApplication>

int main(int argc, char *argv[])
{
    const QApplication application(argc, argv);
    Planaria::MainWindow window;
    window.show();
    return QApplication::exec();
}
