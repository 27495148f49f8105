#include "surroundings.h"

#include <QtCore/QByteArrayList>
#include <QtCore/QDir>

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <cstring>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qel::conformance {

static QByteArrayList environment()
{
    QByteArrayList entries;
    for (char **entry = environ; entry && *entry; ++entry)
        entries += *entry;
    std::sort(entries.begin(), entries.end());
    return entries;
}

static QVector<void (*)(int)> handlers()
{
    QVector<void (*)(int)> all;
    for (int number = 1; number < SIGRTMIN; ++number) {
        struct sigaction action = {};
        ::sigaction(number, nullptr, &action);
        all += action.sa_handler;
    }
    return all;
}

static unsigned mask()
{
    const mode_t present = ::umask(0);
    ::umask(present);
    return present;
}

static QtMessageHandler messageHandler()
{
    const QtMessageHandler present = qInstallMessageHandler(nullptr);
    qInstallMessageHandler(present);
    return present;
}

static QByteArray cLocale()
{
    return std::setlocale(LC_ALL, nullptr);
}

Surroundings::Surroundings()
    : m_cLocale(cLocale())
    , m_folder(QDir::currentPath())
    , m_mask(mask())
    , m_environment(environment())
    , m_handlers(handlers())
    , m_messageHandler(messageHandler())
{ }

QString Surroundings::localeChange() const
{
    if (cLocale() != m_cLocale)
        return QStringLiteral("setlocale() was called: '%1' became '%2'")
            .arg(QString::fromLocal8Bit(m_cLocale), QString::fromLocal8Bit(cLocale()));
    if (QLocale() != m_locale)
        return QStringLiteral("QLocale::setDefault() was called: '%1' became '%2'")
            .arg(m_locale.name(), QLocale().name());
    return {};
}

QString Surroundings::folderChange() const
{
    if (QDir::currentPath() != m_folder)
        return QStringLiteral("the working folder is '%1', it was '%2'")
            .arg(QDir::currentPath(), m_folder);
    return mask() != m_mask ? QStringLiteral("the file mask (umask) changed") : QString();
}

QString Surroundings::environmentChange() const
{
    const QByteArrayList now = environment();
    QByteArrayList changed;
    std::set_symmetric_difference(now.cbegin(), now.cend(), m_environment.cbegin(),
                                  m_environment.cend(), std::back_inserter(changed));
    // Values may be secrets.
    return changed.isEmpty()
        ? QString()
        : QStringLiteral("the variable '%1' changed")
              .arg(QString::fromLocal8Bit(changed.constFirst().split('=').constFirst()));
}

QString Surroundings::signalChange() const
{
    const auto now = handlers();
    for (int i = 0; i < now.size(); ++i) {
        if (now.at(i) != m_handlers.at(i))
            return QStringLiteral("the handler of signal %1 (%2) changed")
                .arg(i + 1)
                .arg(QString::fromLocal8Bit(::strsignal(i + 1)));
    }
    return {};
}

QString Surroundings::messageHandlerChange() const
{
    return messageHandler() == m_messageHandler
        ? QString()
        : QStringLiteral("qInstallMessageHandler() was called");
}

static int entriesOf(const char *folder)
{
    return QDir(QLatin1String(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot)
        .size();
}

int threadCount()
{
    return entriesOf("/proc/self/task");
}

int openFileCount()
{
    return entriesOf("/proc/self/fd");
}

void collectOutput()
{
    std::fflush(stdout);
    const int file = ::memfd_create("output", MFD_CLOEXEC);
    if (file < 0)
        return;
    ::dup2(file, STDOUT_FILENO);
    ::close(file);
}

QByteArray collectedOutput()
{
    std::fflush(stdout);
    char bytes[100];
    const ssize_t size = ::pread(STDOUT_FILENO, bytes, sizeof bytes, 0);
    return size > 0 ? QByteArray(bytes, int(size)) : QByteArray();
}

} // namespace qel::conformance
