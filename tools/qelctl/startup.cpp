#include "startup.h"

#include "tool.h"
#include "watchdog.h"

#include <qelfrontend/startup.h>

#include <QtCore/QLoggingCategory>

namespace qelctl {

static void printLogMessage(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    printMessage(QString::fromLatin1(context.category), message);
}

// Everything from `level` on.
static QString rulesFor(const QString &level)
{
    const QStringList levels{QStringLiteral("debug"), QStringLiteral("info"),
                             QStringLiteral("warning")};
    QStringList rules;
    for (int i = 0; i < levels.size(); ++i) {
        const bool enabled = level != QLatin1String("quiet") && i >= levels.indexOf(level);
        rules.append(
            QStringLiteral("qel.devices*.%1=%2")
                .arg(levels.at(i), enabled ? QStringLiteral("true") : QStringLiteral("false")));
    }
    return rules.join(QLatin1Char('\n'));
}

void startLibrary()
{
    const QString log = globalOptions().log;
    qInstallMessageHandler(&printLogMessage);
    QLoggingCategory::setFilterRules(rulesFor(log.isEmpty() ? QStringLiteral("warning") : log));

    watchDrivers();
    const QStringList problems = qel::frontend::startLibrary(globalOptions().pluginFolders);
    for (const QString &problem : problems)
        complain(problem);

    // From here on the tool itself says in one line what the library would log about a device.
    if (log.isEmpty()) {
        QLoggingCategory::setFilterRules(rulesFor(QStringLiteral("warning"))
                                         + QStringLiteral("\nqel.devices.warning=false"));
    }
}

} // namespace qelctl
