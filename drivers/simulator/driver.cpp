#include "driver.h"

#include "reader.h"
#include "scenario.h"

#include <qeldevices/logging.h>

#include <QtCore/QFile>

#include <algorithm>
#include <iterator>
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

    // Copies of both, as an instrument that is unplugged tells its device, whose receivers may do
    // anything.
    const auto former = std::exchange(m_instruments, {});
    for (const InstrumentDescription &description : std::as_const(scenario.instruments))
        m_instruments.insert(description.location, instrument(description));
    forgetTheGone();
    const auto present = m_instruments;
    for (const auto &instrument : former) {
        if (present.value(instrument->description().location) != instrument)
            instrument->unplug();
    }
    for (const auto &instrument : present) {
        if (former.value(instrument->description().location) != instrument)
            instrument->plugIn();
    }
}

// The one that was described like this before, or a new one.
std::shared_ptr<SimulatedInstrument> Driver::instrument(const InstrumentDescription &description)
{
    std::weak_ptr<SimulatedInstrument> &known = m_known[description.source];
    auto instrument = known.lock();
    if (!instrument)
        known = instrument = std::make_shared<SimulatedInstrument>(description);
    return instrument;
}

void Driver::forgetTheGone()
{
    for (auto known = m_known.begin(); known != m_known.end();)
        known = known->expired() ? m_known.erase(known) : std::next(known);
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
    std::sort(devices.begin(), devices.end());
    return devices;
}

Device *Driver::createDevice(const DeviceInfo &info)
{
    if (!m_source)
        readScenario();
    const auto instrument = m_instruments.value(info.location());
    if (!instrument || !instrument->isPlugged()
        || instrument->description().serial != info.serial())
        return nullptr;
    return new Reader(info, instrument);
}

} // namespace qel::simulator
