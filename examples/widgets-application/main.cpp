#include "window.h"

#include <qelfrontend/startup.h>

#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    qel::frontend::startLibrary();
    Window window;
    window.show();
    return QApplication::exec();
}
