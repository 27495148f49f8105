// Loads every file below "devicedrivers" beside it with a bare QPluginLoader: the floor of init().
#include <QtCore/QCoreApplication>
#include <QtCore/QDirIterator>
#include <QtCore/QPluginLoader>

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    QDirIterator files(QCoreApplication::applicationDirPath() + QStringLiteral("/devicedrivers"),
                       QDir::Files);
    int failed = 0;
    while (files.hasNext()) {
        QPluginLoader loader(files.next());
        failed += loader.instance() == nullptr;
    }
    return failed;
}
