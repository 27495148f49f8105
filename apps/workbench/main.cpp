#include "driverinspection.h"
#include "mainwindow.h"
#include "roomystyle.h"
#include "startup.h"
#include "text.h"

#include <QtCore/QSettings>
#include <QtWidgets/QApplication>

int main(int argc, char *argv[])
{
    if (qelworkbench::isLoadTrial(argc, argv))
        return qelworkbench::runLoadTrial(argc, argv);
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("qeldevices"));
    QCoreApplication::setApplicationName(QStringLiteral("qelworkbench"));
    QApplication::setStyle(new qelworkbench::RoomyStyle);
    QGuiApplication::setDesktopFileName(QStringLiteral("qelworkbench"));
    qelworkbench::useLanguage(QLocale());
    int exitCode = 0;
    const auto line = qelworkbench::readCommandLine(application, &exitCode);
    if (!line)
        return exitCode;
    const QString remembered = QSettings().value(QStringLiteral("language")).toString();
    const QString language = line->language.isEmpty() ? remembered : line->language;
    if (!language.isEmpty())
        qelworkbench::useLanguage(QLocale(language));
    qelworkbench::startLibrary(*line);
    qelworkbench::MainWindow window(*line);
    window.show();
    return QApplication::exec();
}
