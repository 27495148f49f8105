#include "spool.h"

#include <wire.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QSysInfo>
#include <QtCore/QThread>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace qel::server {

using namespace std::chrono_literals;
using devices::Device;

static const char suffix[] = ".json";
static const char partSuffix[] = ".part"; // until it is whole
static const char format[] = "qeldevices-kept-result";

Spool::Spool(QString folder)
    : m_folder(std::move(folder))
{
    m_disk.setMaxThreadCount(1);
}

QString Spool::fileOf(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name + QLatin1String(suffix);
}

// Most results reach their clients before.
constexpr std::chrono::milliseconds moment = 10ms;

static bool sync(const QString &path)
{
    const int open = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC);
    if (open < 0)
        return errno == ENOENT;
    const bool isSynced = ::fsync(open) == 0;
    ::close(open);
    return isSynced;
}

// The name of a file is on the disk only when its folder is.
static void forceToDisk(const QString &folder, const QString &file)
{
    if (QFile::exists(file) && (!sync(file) || !sync(folder)))
        qWarning("'%s' may not be on the disk: %s", qPrintable(file), strerror(errno));
}

static QJsonObject documentOf(const QString &client, const Device &device, const rpc::FarRun &run,
                              const QVariant &result)
{
    const auto json = [](const QVariant &value) {
        return values::toJson(value, nullptr).value_or(QJsonValue());
    };
    return {{QStringLiteral("format"), QLatin1String(format)},
            {QStringLiteral("client"), client},
            {QStringLiteral("interface"), int(device.deviceInfo().interface())},
            {QStringLiteral("driver"), device.driver()},
            {QStringLiteral("location"), device.location()},
            {QStringLiteral("name"), device.name()},
            {QStringLiteral("serial"), device.serial()},
            {QStringLiteral("plugin"),
             QJsonObject::fromVariantMap(device.property(rpc::pluginProperty).toMap())},
            {QStringLiteral("machine"), QSysInfo::machineHostName()},
            {QStringLiteral("feature"), int(run.feature)},
            {QStringLiteral("startedAt"), run.startedAt.toString(Qt::ISODateWithMs)},
            {QStringLiteral("elapsed"), double(run.clock.elapsed())},
            {QStringLiteral("descriptor"), json(run.descriptor)},
            {QStringLiteral("configuration"), json(run.configuration)},
            {QStringLiteral("result"), json(result)}};
}

// Under another name until it is whole, and without waiting for the disk, as QSaveFile does.
static bool write(const QString &fileName, const QByteArray &content, QString *problem)
{
    const QByteArray part = QFile::encodeName(fileName + QLatin1String(partSuffix));
    const int open =
        ::open(part.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, S_IRUSR | S_IWUSR);
    QFile file;
    const bool isWritten = open >= 0
        && file.open(open, QIODevice::WriteOnly | QIODevice::Unbuffered, QFile::AutoCloseHandle)
        && file.write(content) == content.size();
    file.close();
    if (isWritten && ::rename(part.constData(), QFile::encodeName(fileName).constData()) == 0)
        return true;
    *problem = QStringLiteral("'%1' cannot be written: %2")
                   .arg(fileName, QString::fromLocal8Bit(strerror(errno)));
    ::unlink(part.constData());
    return false;
}

QString Spool::keep(const QString &client, const Device &device, const rpc::FarRun &run,
                    const QVariant &result, QString *problem)
{
    if (::mkdir(QFile::encodeName(m_folder).constData(), S_IRWXU) != 0 && errno != EEXIST) {
        *problem = QStringLiteral("the folder '%1' cannot be made: %2")
                       .arg(m_folder, QString::fromLocal8Bit(strerror(errno)));
        return {};
    }
    // Names of clients come from outside.
    static const QRegularExpression unsuited(QStringLiteral("[^A-Za-z0-9_-]"));
    const QString who = QString(client).replace(unsuited, QStringLiteral("_"));
    const QString first = QStringLiteral("%1-%2").arg(
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")), who);
    QString name = first;
    for (int i = 2; QFile::exists(fileOf(name)); ++i)
        name = QStringLiteral("%1-%2").arg(first, QString::number(i));
    const QJsonDocument document(documentOf(client, device, run, result));
    if (!write(fileOf(name), document.toJson(), problem))
        return {};
    forceLater(name);
    return name;
}

void Spool::forceLater(const QString &name)
{
    m_disk.start([folder = m_folder, file = fileOf(name), end = QDeadlineTimer(moment)] {
        QThread::msleep(ulong(end.remainingTime()));
        forceToDisk(folder, file);
    });
}

// The end may have come between the last byte and the name.
QList<Spool::Unfinished> Spool::tidy()
{
    QList<Unfinished> all;
    const QString ending = QLatin1String(suffix) + QLatin1String(partSuffix);
    const auto parts =
        QDir(m_folder).entryInfoList({QLatin1Char('*') + ending}, QDir::Files, QDir::Name);
    for (const QFileInfo &part : parts) {
        const QString name = part.fileName().chopped(ending.size());
        QFile file(part.absoluteFilePath());
        const bool isWhole = file.open(QIODevice::ReadOnly)
            && QJsonDocument::fromJson(file.readAll()).object().value(QStringLiteral("format"))
                == QLatin1String(format);
        if (!isWhole)
            file.remove();
        else if (file.rename(fileOf(name)))
            forceLater(name);
        all.append({name, isWhole});
    }
    return all;
}

void Spool::drop(const QString &name)
{
    QFile::remove(fileOf(name));
}

QByteArray Spool::read(const QString &client, const QString &name) const
{
    QFile file(fileOf(name));
    if (name.contains(QLatin1Char('/')) || !file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray content = file.readAll();
    const QJsonObject document = QJsonDocument::fromJson(content).object();
    return document.value(QStringLiteral("client")).toString() == client ? content : QByteArray();
}

QStringList Spool::names(const QString &client) const
{
    QStringList own;
    const auto files = QDir(m_folder).entryInfoList({QLatin1Char('*') + QLatin1String(suffix)},
                                                    QDir::Files, QDir::Name);
    for (const QFileInfo &file : files) {
        const QString name = file.completeBaseName();
        if (!read(client, name).isEmpty())
            own.append(name);
    }
    return own;
}

} // namespace qel::server
