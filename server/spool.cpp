#include "spool.h"

#include "identity.h"

#include <wire.h>

#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QRegularExpression>
#include <QtCore/QSysInfo>

#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace qel::server {

using devices::Device;

static const char suffix[] = ".json";

Spool::Spool(QString folder)
    : m_folder(std::move(folder))
{ }

QString Spool::fileOf(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name + QLatin1String(suffix);
}

// The name of a file is on the disk only when its folder is.
static void syncFolder(const QString &folder)
{
    const int open = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC);
    if (open >= 0) {
        ::fsync(open);
        ::close(open);
    }
}

static QJsonObject documentOf(const QString &client, const Device &device, const rpc::FarRun &run,
                              const QVariant &result)
{
    const auto json = [](const QVariant &value) {
        return values::toJson(value, nullptr).value_or(QJsonValue());
    };
    return {{QStringLiteral("format"), QStringLiteral("qeldevices-kept-result")},
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

QString Spool::keep(const QString &client, const Device &device, const rpc::FarRun &run,
                    const QVariant &result, QString *problem)
{
    if (!QDir().mkpath(m_folder)) {
        *problem = QStringLiteral("the folder '%1' cannot be made").arg(m_folder);
        return {};
    }
    // Names of clients come from outside.
    const QString who = QString(client).replace(
        QRegularExpression(QStringLiteral("[^A-Za-z0-9_-]")), QStringLiteral("_"));
    const QString first = QStringLiteral("%1-%2").arg(
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz")), who);
    QString name = first;
    for (int i = 2; QFile::exists(fileOf(name)); ++i)
        name = QStringLiteral("%1-%2").arg(first, QString::number(i));
    const QJsonDocument document(documentOf(client, device, run, result));
    if (!writePrivateFile(fileOf(name), document.toJson(), problem))
        return {};
    syncFolder(m_folder);
    return name;
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
