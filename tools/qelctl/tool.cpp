#include "tool.h"

#include "statusline.h"
#include "terminaltext.h"

#include <cstdio>

namespace qelctl {

static GlobalOptions &storedOptions()
{
    static GlobalOptions options;
    return options;
}

const GlobalOptions &globalOptions()
{
    return storedOptions();
}

void setGlobalOptions(const GlobalOptions &options)
{
    storedOptions() = options;
}

QString text(const char *id)
{
    return qtTrId(id);
}

void printMessage(const QString &origin, const QString &message)
{
    clearStatus(); // standard error belongs also to whoever follows a run there
    const QByteArray lines = messageLines(origin + QStringLiteral(": ") + message).toUtf8() + '\n';
    std::fwrite(lines.constData(), 1, size_t(lines.size()), stderr);
    std::fflush(stderr);
}

static QString &storedComplaint()
{
    static QString complaint;
    return complaint;
}

QString lastComplaint()
{
    return storedComplaint();
}

void complain(const QString &message)
{
    storedComplaint() = message;
    printMessage(QStringLiteral("qelctl"), message);
}

int fail(ExitCode code, const QString &message)
{
    complain(message);
    return code;
}

} // namespace qelctl
