#include "subject.h"

#include "catalogues.h"
#include "probeddevice.h"
#include "tour.h"
#include "unplugging.h"
#include "worker_p.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QCoreApplication>
#include <QtCore/QEventLoop>
#include <QtCore/QJsonArray>
#include <QtCore/QThread>
#include <QtCore/QTimer>

#include <algorithm>

namespace qel::conformance {

using devices::Device;
using devices::DeviceBroker;
using devices::DeviceDriver;
using devices::DeviceInfo;
using devices::DevicePlugin;

Subject::Subject(const Assignment &assignment, const Parent &parent)
    : m_assignment(assignment)
    , m_parent(parent)
    , m_loader(assignment.host.isEmpty() ? assignment.fileName : assignment.host)
{
    collectOutput();
    // Whoever lets events be handled while a call has not returned nests a loop.
    QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::awake,
                     &m_loader, [this] {
                         if (m_callDepth > 0 && m_nestedLoop.isEmpty())
                             m_nestedLoop = QStringLiteral("in %1").arg(m_callName);
                     });
    m_beat.start();
}

Subject::~Subject() = default;

QJsonObject Subject::metaData() const
{
    return QPluginLoader(m_assignment.fileName).metaData();
}

QObject *Subject::root()
{
    QObject *root = nullptr;
    call(QStringLiteral("loading"), [&] { root = m_loader.instance(); });
    if (!root)
        throw Unmet{Needs::Plugin, m_loader.errorString()};
    return root;
}

DevicePlugin *Subject::plugin()
{
    auto *plugin = qobject_cast<DevicePlugin *>(root());
    if (!plugin)
        throw Unmet{Needs::Plugin, QStringLiteral("the root object is no DevicePlugin")};
    if (!m_assignment.host.isEmpty() && !m_isHostStarted)
        startHost(plugin);
    return plugin;
}

// What is known of the process that has the plugin.
QVariantMap Subject::hostState()
{
    QVariantList hosts;
    QMetaObject::invokeMethod(m_loader.instance(), "hosts", Q_RETURN_ARG(QVariantList, hosts));
    return hosts.value(0).toMap();
}

QString Subject::hostEnd()
{
    if (!m_isHostStarted)
        return {};
    // A process that ends in the last call of a rule is noticed a moment later.
    const int moment = 20;
    waitFor(moment, [] { return false; });
    const QVariantMap known = hostState();
    return known.value(QStringLiteral("endings")).toInt() == 0
        ? QString()
        : known.value(QStringLiteral("lastTrouble")).toString();
}

// The process does not load the plugin before drivers are to be registered.
void Subject::startHost(DevicePlugin *plugin)
{
    QVariantMap host;
    call(QStringLiteral("loading"), [&] {
        plugin->registerDrivers();
        host = hostState();
    });
    const QString state = host.value(QStringLiteral("state")).toString();
    if (state.isEmpty())
        throw Unmet{Needs::Plugin, QStringLiteral("no process was started for it")};
    if (state == QLatin1String("refused"))
        throw Unmet{Needs::Plugin, QStringLiteral("it is no driver plugin, or does not load")};
    if (state != QLatin1String("serving"))
        throw Unmet{Needs::Plugin, host.value(QStringLiteral("trouble")).toString()};
    m_isHostStarted = true;
}

void Subject::registerAgain()
{
    DevicePlugin *asked = plugin();
    call(QStringLiteral("registerDrivers()"), [&] { asked->registerDrivers(); });
}

QStringList Subject::driverNames()
{
    if (!m_isRegistered) {
        registerAgain();
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
    const QString &wanted = m_assignment.driver;
    if (wanted.isEmpty() && names.size() > 1)
        throw Unmet{Needs::Driver,
                    QStringLiteral("the plugin has the drivers %1: name one").arg(list), true};
    const QString name = wanted.isEmpty() ? names.constFirst() : wanted;
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
    const QString &serial = m_assignment.serial;
    const QList<DeviceInfo> all = records();
    for (const DeviceInfo &info : all) {
        if (serial.isEmpty() || info.serial() == serial) {
            reserve(info);
            return info;
        }
    }
    if (serial.isEmpty())
        throw Unmet{Needs::Instrument, QStringLiteral("the driver lists no instrument")};
    throw Unmet{
        Needs::Instrument,
        QStringLiteral("the driver lists no instrument with the serial number '%1'").arg(serial),
        true};
}

// Each process has simulated ones of its own.
void Subject::reserve(const DeviceInfo &record)
{
    if (m_isReserved || record.interface() == DeviceInfo::Simulator)
        return;
    const QString other =
        m_parent.reserve(record.driver() + QLatin1Char('/')
                         + (record.serial().isEmpty() ? record.location() : record.serial()));
    if (!other.isEmpty())
        throw Unmet{Needs::Instrument, other};
    m_isReserved = true;
}

Device *Subject::create(const DeviceInfo &info)
{
    DeviceDriver *asked = driver();
    Device *device = nullptr;
    timed(QStringLiteral("createDevice()"), [&] { device = asked->createDevice(info); });
    return device;
}

ProbedDevice &Subject::opened()
{
    const auto isFit = [this] {
        return m_opened && m_opened->device() && (*m_opened)->isOpen() && !(*m_opened)->isBusy();
    };
    if (!isFit()) {
        m_opened.reset();
        auto instrument = std::make_unique<ProbedDevice>(*this);
        instrument->open();
        m_opened = std::move(instrument);
    }
    m_lastRecorder = m_opened->m_recorder;
    return *m_opened;
}

void Subject::releaseOpened()
{
    m_opened.reset();
}

// That an instrument opened before and does not now is a fault of its own, unless it is gone.
void Subject::noteUnopened(const QString &why)
{
    if (m_offered.isEmpty())
        return;
    record();
    reportStuck({Device::DF_None, 410, QStringLiteral("it opened before, and now %1").arg(why)});
}

const Tour &Subject::tour()
{
    if (!m_tour)
        m_tour = std::make_unique<Tour>(makeTour(*this));
    return *m_tour;
}

const Unplugging &Subject::unplugging()
{
    if (!m_unplugging)
        m_unplugging = std::make_unique<Unplugging>(makeUnplugging(*this));
    return *m_unplugging;
}

// Notes how long the event loop was not reached.
void Subject::beat()
{
    qint64 &longest = m_times[QString()];
    longest = std::max(longest, m_beat.restart());
}

void Subject::call(const QString &name, const std::function<void()> &work, Feature feature)
{
    if (isHung(name))
        throw Hindered{QStringLiteral("%1 does not return").arg(name)};
    m_parent.tell({{keyCall, name}, {keyFeature, int(feature)}});
    m_callClock.start();
    m_callName = name;
    ++m_callDepth;
    work();
    --m_callDepth;
    m_callClock.invalidate();
    m_parent.tell({{keyReturned, true}});
}

void Subject::timed(const QString &name, const std::function<void()> &work, Feature feature)
{
    beat();
    QElapsedTimer timer;
    timer.start();
    call(name, work, feature);
    qint64 &longest = m_times[name];
    longest = std::max(longest, timer.elapsed());
    m_beat.restart();
}

bool Subject::isHung(const QString &name) const
{
    return m_assignment.hung.contains(name);
}

bool Subject::isOverdue() const
{
    const int silent = limits().silent;
    return (m_callClock.isValid() && m_callClock.elapsed() > silent)
        || (m_waitClock.isValid() && m_waitClock.elapsed() > qint64(m_waitLimit) + silent);
}

// Somebody else has ended the loop: the application was told to quit, and forgets it when it has.
void Subject::recoverFromQuit()
{
    m_isQuit = true;
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
}

bool Subject::waitFor(int milliseconds, const std::function<bool()> &condition)
{
    m_waitLimit = milliseconds;
    m_waitClock.start();
    bool holds = condition();
    QEventLoop loop;
    QTimer poll;
    poll.setTimerType(Qt::PreciseTimer);
    const int level = QThread::currentThread()->loopLevel() + 1;
    QObject::connect(&poll, &QTimer::timeout, &loop, [&] {
        beat();
        if (QThread::currentThread()->loopLevel() > level && m_nestedLoop.isEmpty())
            m_nestedLoop = QStringLiteral("in the event loop, after %1").arg(m_callName);
        holds = condition();
        if (holds || m_waitClock.elapsed() >= milliseconds)
            loop.quit();
    });
    poll.start(2);
    m_beat.restart();
    while (!holds && m_waitClock.elapsed() < milliseconds) {
        loop.exec();
        if (!holds && m_waitClock.elapsed() < milliseconds)
            recoverFromQuit();
    }
    m_waitClock.invalidate();
    return holds;
}

void Subject::settle()
{
    waitFor(limits().quiet, [] { return false; });
}

void Subject::awaitTable(const Device *device)
{
    const auto table = [device] {
        QVector<QPair<Feature, QVariant>> rows;
        for (int i = 0; i <= Device::DF_LedBarEffect; ++i) {
            if (device->hasFeature(Feature(i)))
                rows += {Feature(i), device->descriptor(Feature(i))};
        }
        return rows;
    };
    // The first device of a process shows how long it takes.
    auto last = table();
    QElapsedTimer clock;
    clock.start();
    qint64 changed = 0;
    const qint64 patience =
        m_tableTime ? *m_tableTime + limits().quiet : std::max(limits().late, limits().quiet);
    waitFor(int(patience), [&] {
        if (table() != last) {
            last = table();
            changed = clock.elapsed();
        }
        return false;
    });
    if (!m_tableTime)
        m_tableTime = int(changed);
}

bool Subject::permits(const QString &action)
{
    switch (m_assignment.answers) {
    case Answers::Confirm:
        return true;
    case Answers::Decline:
        return false;
    case Answers::Ask:
        break;
    }
    return m_parent.ask(pluginText(action));
}

void Subject::ask(const char *sentence)
{
    const QString text = QString::fromLatin1(sentence);
    // Who has said no is not asked again by the next rule.
    if (m_undone.contains(text) || !m_parent.ask(text)) {
        m_undone += text;
        throw Hindered{QStringLiteral("nobody has done it: %1").arg(text)};
    }
}

void Subject::reportStuck(const Stuck &stuck)
{
    m_assignment.stuck += stuck;
    m_parent.tell({{keyStuck, toJson(stuck)}});
}

QMap<QString, qint64> Subject::takeTimes()
{
    QMap<QString, qint64> times;
    times.swap(m_times);
    return times;
}

QJsonObject Subject::takeTally()
{
    QJsonArray endings;
    for (Watched &watched : m_recorders) {
        const auto events = watched.recorder->events(watched.counted);
        watched.counted += events.size();
        for (const Event &event : events) {
            if (event.kind == Event::Executed)
                endings += QJsonArray{int(event.feature), event.flag, event.errorCode};
        }
    }
    QJsonArray offered;
    for (const Feature feature : qAsConst(m_offered))
        offered += int(feature);
    return {{keyOffered, offered}, {keyEndings, endings}};
}

QVector<Event> Subject::foreignEvents() const
{
    QVector<Event> foreign;
    for (const Watched &watched : m_recorders) {
        const auto events = watched.recorder->events();
        std::copy_if(events.cbegin(), events.cend(), std::back_inserter(foreign),
                     [](const Event &event) { return !event.isOwnThread; });
    }
    return foreign;
}

void Subject::closeAll()
{
    const auto instruments = m_instruments;
    for (ProbedDevice *instrument : instruments) {
        if (Device *device = instrument->device())
            device->close();
    }
    const int patience = 2000;
    waitFor(patience, [&] {
        return std::all_of(instruments.cbegin(), instruments.cend(), [](ProbedDevice *instrument) {
            return !instrument->device() || !(*instrument)->isOpen();
        });
    });
}

QStringList Subject::signalsSeen() const
{
    return m_lastRecorder ? toLines(m_lastRecorder->events()) : QStringList();
}

} // namespace qel::conformance
