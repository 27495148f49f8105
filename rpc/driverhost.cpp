#include "driverhost.h"

#include "remotedevice.h"

#include <qeldevices/logging.h>

#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>

#include <grpcpp/create_channel_posix.h>

#include <algorithm>
#include <utility>

namespace qel::rpc {

using namespace std::chrono_literals;
using devices::Device;
using devices::DeviceBroker;
using devices::DeviceInfo;

constexpr std::chrono::milliseconds firstPause = 100ms;
constexpr std::chrono::milliseconds longestPause = 10s;
// A process that has lived as long did not fail because of how it was started.
constexpr std::chrono::milliseconds soundAge = 1s;
// How often in a row a process may show no life. These are counted and not measured: time in which
// this process did not run, either, is none of the other's.
constexpr int missedAtMost = 5;
constexpr int missedAtMostInLoading = 30;
// The first enumeration is worth a moment, as nothing is known before it.
constexpr std::chrono::milliseconds firstAnswer = 500ms;

QString HostTrouble::text() const
{
    const QString call = lastCall.text();
    const QString end = ending.kind == isolation::Ending::Running
        ? QStringLiteral("the process does not answer")
        : ending.text();
    return call.isEmpty() ? end : end + QStringLiteral(", ") + call;
}

DriverHost::DriverHost(const QString &pluginFile, QObject *parent)
    : QObject(parent)
    , m_pluginFile(pluginFile)
    , m_nextPause(firstPause)
{
    m_pause.setSingleShot(true);
    connect(&m_pause, &QTimer::timeout, this, &DriverHost::start);
    connect(&m_end, &QTimer::timeout, this, &DriverHost::onEnded);
    connect(&m_link, &Link::lost, this, &DriverHost::onLost);
    connect(&m_link, &Link::silent, this, &DriverHost::endSilent);
    m_pulse.setTimerType(Qt::VeryCoarseTimer);
    connect(&m_pulse, &QTimer::timeout, this, &DriverHost::feelPulse);
    connect(&m_link, &Link::ready, this, [this] {
        if (m_isWanted)
            registerDrivers();
    });
    start();
}

QString DriverHost::pluginFile() const
{
    return m_pluginFile;
}

qint64 DriverHost::processId() const
{
    return m_process.id();
}

Link *DriverHost::link()
{
    return &m_link;
}

void DriverHost::settle(std::chrono::milliseconds time)
{
    const QDeadlineTimer deadline(time);
    m_link.settle(time);
    while (trouble() && !m_trouble && !deadline.hasExpired()) {
        QThread::msleep(2);
        onEnded();
    }
}

std::optional<HostTrouble> DriverHost::trouble() const
{
    if (m_link.knowsInstruments())
        return std::nullopt;
    if (m_trouble)
        return m_trouble;
    return HostTrouble{{isolation::Ending::Running, 0}, m_process.trail().lastCall()};
}

std::optional<HostTrouble> DriverHost::lastTrouble() const
{
    return m_trouble;
}

int DriverHost::endings() const
{
    return m_endings;
}

void DriverHost::registerDrivers()
{
    m_isWanted = !m_link.isReady();
    const QStringList names = m_link.drivers();
    for (const QString &name : names)
        DeviceBroker::addDriver(std::make_shared<HostedDriver>(name, &m_link));
}

void DriverHost::start()
{
    QString problem = QStringLiteral("qeldevices-host is not installed");
    const QString program = hostProgram();
    const int socket = program.isEmpty() ? -1 : m_process.start(program, m_pluginFile, &problem);
    if (socket < 0) {
        qCWarning(LogCDevices) << "No process for the driver plugin" << m_pluginFile
                               << "\n\tReason:" << problem;
        m_trouble = HostTrouble();
        startLater();
        return;
    }
    m_age.start();
    m_beats = 0;
    m_missed = 0;
    m_pulse.start(hostPulse);
    grpc::ChannelArguments arguments;
    arguments.SetMaxReceiveMessageSize(maximumMessageSize);
    m_link.connectTo(grpc::CreateCustomInsecureChannelFromFd("host", socket, arguments));
}

// The process has ended or is about to: it serves this one connection.
void DriverHost::onLost()
{
    m_sinceLost.start();
    m_end.start(5ms);
    onEnded();
}

void DriverHost::endSilent(const QString &call)
{
    qCWarning(LogCDevices) << "The process of the driver plugin" << m_pluginFile
                           << "does not answer; it is ended.\n\tCall:" << call;
    m_process.kill();
}

void DriverHost::feelPulse()
{
    const quint32 beats = m_process.trail().beats();
    if (std::exchange(m_beats, beats) != beats)
        m_missed = 0;
    else if (++m_missed == (beats == 0 ? missedAtMostInLoading : missedAtMost))
        endSilent(m_process.trail().lastCall().text());
}

void DriverHost::onEnded()
{
    const auto end = m_process.end();
    if (!end) {
        // It gets time to end in good order.
        if (m_sinceLost.elapsed() > 500)
            m_process.kill();
        return;
    }
    m_end.stop();
    m_pulse.stop();
    m_trouble = HostTrouble{*end, m_process.trail().lastCall()};
    ++m_endings;
    qCWarning(LogCDevices) << "The process of the driver plugin" << m_pluginFile
                           << "has ended.\n\tReason:" << m_trouble->text();
    startLater();
}

void DriverHost::startLater()
{
    if (m_age.isValid() && m_age.elapsed() > soundAge.count())
        m_nextPause = firstPause;
    m_pause.start(m_nextPause);
    m_nextPause = std::min(2 * m_nextPause, longestPause);
}

HostedDriver::HostedDriver(QString name, Link *link)
    : m_name(std::move(name))
    , m_link(link)
{ }

QString HostedDriver::name()
{
    return m_name;
}

QList<DeviceInfo> HostedDriver::availableDevices()
{
    QList<DeviceInfo> own;
    if (!m_link)
        return own;
    m_link->waitForInstruments(firstAnswer);
    const auto all = m_link->instruments();
    std::copy_if(all.cbegin(), all.cend(), std::back_inserter(own),
                 [this](const DeviceInfo &info) { return info.driver() == m_name; });
    return own;
}

Device *HostedDriver::createDevice(const DeviceInfo &info)
{
    const auto known = availableDevices();
    const bool isKnown = std::any_of(known.cbegin(), known.cend(), [&](const DeviceInfo &other) {
        return other.location() == info.location() && other.serial() == info.serial();
    });
    return isKnown ? new RemoteDevice(info, info, m_link) : nullptr;
}

} // namespace qel::rpc
