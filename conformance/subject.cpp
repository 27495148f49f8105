#include "subject.h"

#include "values.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::DeviceBroker;
using devices::DeviceDriver;
using devices::DeviceInfo;
using devices::DevicePlugin;

Subject::Subject(const QString &fileName, const QString &driverName, const QString &serial,
                 bool isUnsafe, const Limits &limits)
    : m_limits(limits)
    , m_driverName(driverName)
    , m_serial(serial)
    , m_isUnsafe(isUnsafe)
    , m_loader(fileName)
{
    m_beat.start();
}

QJsonObject Subject::metaData() const
{
    return m_loader.metaData();
}

QObject *Subject::root()
{
    QObject *root = m_loader.instance();
    if (!root)
        throw Unmet{Needs::Plugin, m_loader.errorString()};
    return root;
}

DevicePlugin *Subject::plugin()
{
    auto *plugin = qobject_cast<DevicePlugin *>(root());
    if (!plugin)
        throw Unmet{Needs::Plugin, QStringLiteral("the root object is no DevicePlugin")};
    return plugin;
}

QStringList Subject::driverNames()
{
    if (!m_isRegistered) {
        plugin()->registerDrivers();
        m_isRegistered = true;
    }
    QStringList names = DeviceBroker::availableDrivers();
    names.sort();
    return names;
}

DeviceDriver *Subject::driver()
{
    const QStringList names = driverNames();
    if (names.isEmpty())
        throw Unmet{Needs::Driver, QStringLiteral("the plugin registers no driver")};
    const QString list = QStringLiteral("'%1'").arg(names.join(QStringLiteral("', '")));
    if (m_driverName.isEmpty() && names.size() > 1)
        throw Unmet{Needs::Driver,
                    QStringLiteral("the plugin has the drivers %1: name one").arg(list), true};
    const QString name = m_driverName.isEmpty() ? names.constFirst() : m_driverName;
    if (!names.contains(name))
        throw Unmet{Needs::Driver,
                    QStringLiteral("the plugin has no driver '%1', only %2").arg(name, list), true};
    return DeviceBroker::DRIVERS.value(name).get();
}

QList<DeviceInfo> Subject::records()
{
    DeviceDriver *asked = driver();
    QList<DeviceInfo> records;
    timed(QStringLiteral("availableDevices()"), [&] { records = asked->availableDevices(); });
    std::sort(records.begin(), records.end());
    return records;
}

DeviceInfo Subject::record()
{
    const QList<DeviceInfo> all = records();
    for (const DeviceInfo &info : all) {
        if (m_serial.isEmpty() || info.serial() == m_serial)
            return info;
    }
    if (m_serial.isEmpty())
        throw Unmet{Needs::Instrument, QStringLiteral("the driver lists no instrument")};
    throw Unmet{
        Needs::Instrument,
        QStringLiteral("the driver lists no instrument with the serial number '%1'").arg(m_serial),
        true};
}

// Notes how long the event loop was not reached.
void Subject::beat()
{
    qint64 &longest = m_times[QString()];
    longest = std::max(longest, m_beat.restart());
}

void Subject::timed(const QString &name, const std::function<void()> &work)
{
    beat();
    QElapsedTimer timer;
    timer.start();
    work();
    qint64 &longest = m_times[name];
    longest = std::max(longest, timer.elapsed());
    m_beat.restart();
}

bool Subject::waitFor(int milliseconds, const std::function<bool()> &condition)
{
    QElapsedTimer clock;
    clock.start();
    bool holds = condition();
    QEventLoop loop;
    QTimer poll;
    poll.setTimerType(Qt::PreciseTimer);
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        beat();
        holds = condition();
        if (holds || clock.elapsed() >= milliseconds)
            loop.quit();
    });
    poll.start(2);
    m_beat.restart();
    if (!holds)
        loop.exec();
    return holds;
}

void Subject::settle()
{
    waitFor(m_limits.quiet, [] { return false; });
}

QMap<QString, qint64> Subject::takeTimes()
{
    QMap<QString, qint64> times;
    times.swap(m_times);
    return times;
}

QStringList Subject::catalogueFolders() const
{
    QStringList folders;
    QDirIterator it(QStringLiteral(":/qel/devices"), QDir::Dirs | QDir::NoDotAndDotDot,
                    QDirIterator::Subdirectories);
    while (it.hasNext())
        folders += it.next();
    folders.sort();
    return folders;
}

static bool translates(const QStringList &catalogues, const QString &id)
{
    return std::any_of(catalogues.cbegin(), catalogues.cend(), [&](const QString &catalogue) {
        QTranslator translator;
        return translator.load(catalogue)
            && !translator.translate(nullptr, id.toUtf8().constData()).isEmpty();
    });
}

QString Subject::translationFault(const QString &id) const
{
    const QStringList folders = catalogueFolders();
    for (const char *name : {"en", "de"}) {
        const QLatin1String language(name);
        QStringList catalogues;
        for (const QString &folder : folders)
            catalogues += QStringLiteral("%1/plugin_%2.qm").arg(folder, language);
        const bool isThere = std::any_of(catalogues.cbegin(), catalogues.cend(),
                                         [](const QString &file) { return QFile::exists(file); });
        // The library's own ids serve as well.
        catalogues += QStringLiteral(":/qel/devices/qeldevices_%1.qm").arg(language);
        if (isThere && !translates(catalogues, id))
            return QStringLiteral("'%1' is in no catalogue for '%2'").arg(id, language);
    }
    return {};
}

void Subject::closeAll()
{
    const auto instruments = m_instruments;
    for (Instrument *instrument : instruments) {
        if (Device *device = instrument->device())
            device->close();
    }
}

QStringList Subject::signalsSeen() const
{
    const int enough = 40;
    return m_lastRecorder ? m_lastRecorder->toStringList(enough) : QStringList();
}

} // namespace qel::conformance
