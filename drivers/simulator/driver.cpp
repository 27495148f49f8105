#include "driver.h"

#include "reader.h"
#include "scenario.h"

#include <qeldevices/logging.h>

#include <QtCore/QFile>

#include <algorithm>
#include <utility>

namespace qel::simulator {

using qel::devices::Device;
using qel::devices::DeviceInfo;

QString Driver::name()
{
    return QStringLiteral("simulator");
}

static void complain(const QString &fileName, const QString &mistake)
{
    qCWarning(LogCDriver).noquote()
        << QStringLiteral("Simulator scenario '%1': %2").arg(fileName, mistake);
}

static SourceText readSource(const QString &fileName)
{
    if (fileName.isEmpty())
        return {builtInScenario(), QString()};
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return {QByteArray(), QStringLiteral("cannot be read: %1").arg(file.errorString())};
    return {file.readAll(), QString()};
}

void Driver::readScenario()
{
    const QString fileName = qEnvironmentVariable("QELDEVICES_SIMULATOR");
    const SourceText source = readSource(fileName);
    if (m_source == source)
        return;
    m_source = source;

    Scenario scenario;
    if (source.second.isEmpty())
        scenario = parseScenario(source.first);
    else
        scenario.mistakes.append(source.second);
    for (const QString &mistake : std::as_const(scenario.mistakes))
        complain(fileName, mistake);

    const auto former = std::exchange(m_instruments, {});
    for (const InstrumentDescription &description : std::as_const(scenario.instruments))
        m_instruments.append(instrument(description));
    for (const auto &instrument : former) {
        if (!m_instruments.contains(instrument))
            instrument->unplug();
    }
    for (const auto &instrument : std::as_const(m_instruments)) {
        if (!former.contains(instrument))
            instrument->plugIn();
    }
}

// The one that was described like this before, or a new one.
std::shared_ptr<Instrument> Driver::instrument(const InstrumentDescription &description)
{
    const auto known = std::find_if(m_store.cbegin(), m_store.cend(), [&](const auto &instrument) {
        return instrument->description() == description;
    });
    if (known != m_store.cend())
        return *known;
    m_store.append(std::make_shared<Instrument>(description));
    return m_store.constLast();
}

QList<DeviceInfo> Driver::availableDevices()
{
    readScenario();
    QList<DeviceInfo> devices;
    // A copy: an instrument that is unplugged tells its device, whose receivers may do anything.
    const auto instruments = m_instruments;
    for (const auto &instrument : instruments) {
        if (instrument->answersEnumeration())
            devices.append(instrument->description().info(name()));
    }
    return devices;
}

Device *Driver::createDevice(const DeviceInfo &info)
{
    if (!m_source)
        readScenario();
    for (const auto &instrument : std::as_const(m_instruments)) {
        const DeviceInfo known = instrument->description().info(name());
        if (instrument->isPlugged() && known.location() == info.location()
            && known.serial() == info.serial())
            return new Reader(info, instrument);
    }
    return nullptr;
}

} // namespace qel::simulator
