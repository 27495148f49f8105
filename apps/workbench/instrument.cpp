#include "instrument.h"

#include "plaintext.h"
#include "text.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/provenance.h>
#include <qelfrontend/selection.h>

#include <QtCore/QUuid>

#include <algorithm>

namespace qelworkbench {

using namespace qel::frontend;
using qel::devices::Device;
using qel::devices::DeviceBroker;
using qel::devices::DeviceInfo;

Instrument::Instrument(const DeviceInfo &info, Store *store, QObject *parent)
    : QObject(parent)
    , m_info(info)
    , m_store(store)
{
    m_pause.setSingleShot(true);
    m_pause.setTimerType(Qt::PreciseTimer);
    connect(&m_pause, &QTimer::timeout, this, &Instrument::startRun);
}

Instrument::~Instrument()
{
    m_run.reset();
    if (m_device) {
        m_device->disconnect(this);
        if (m_device->isOpen())
            m_device->close();
    }
}

const DeviceInfo &Instrument::info() const
{
    return m_info;
}

void Instrument::setInfo(const DeviceInfo &info)
{
    m_info = info;
    Q_EMIT changed();
}

void Instrument::setAttached(bool attached)
{
    if (attached == m_isAttached)
        return;
    m_isAttached = attached;
    if (attached) {
        m_problem.clear();
        // Another device for what may be another instrument in the same place.
        if (!isBusy() && m_state != Opening) {
            m_device.reset();
            m_firmware.clear();
        }
    }
    if (!isBusy() && m_state != Opening)
        setState(restingState());
}

Instrument::State Instrument::state() const
{
    return m_state;
}

bool Instrument::isBusy() const
{
    return m_isSeries;
}

bool Instrument::isOpen() const
{
    return m_device && m_device->isOpen();
}

QString Instrument::problem() const
{
    return m_problem;
}

double Instrument::progress() const
{
    return m_progress;
}

qint64 Instrument::elapsed() const
{
    return m_run && m_clock.isValid() ? m_clock.elapsed() : 0;
}

int Instrument::number() const
{
    return m_number;
}

const Order &Instrument::order() const
{
    return m_order;
}

QDateTime Instrument::nextStart() const
{
    return m_nextStart;
}

QString Instrument::action() const
{
    return m_action;
}

int Instrument::unkeptCount() const
{
    return m_unkept.size();
}

QString Instrument::firmware() const
{
    return m_firmware.isValid()
        ? plainText(m_firmware).replace(QLatin1Char('\n'), QStringLiteral(", "))
        : QString();
}

QList<Device::DeviceFeature> Instrument::features() const
{
    return isOpen() ? offeredFeatures(*m_device) : QList<Device::DeviceFeature>();
}

QVariant Instrument::descriptor(Device::DeviceFeature feature) const
{
    return m_device ? m_device->descriptor(feature) : QVariant();
}

bool Instrument::makeDevice()
{
    if (!m_device) {
        Q_EMIT calling(m_info.driver());
        m_device.reset(DeviceBroker::createDevice(m_info));
        if (!m_device) {
            m_problem = text("qelworkbench-no-device", m_info.driver());
            return false;
        }
        connect(m_device.get(), &Device::openChanged, this, [this] {
            if (!m_run)
                setState(restingState());
            Q_EMIT featuresChanged();
        });
        connect(m_device.get(), &Device::featuresChanged, this, &Instrument::featuresChanged);
        connect(m_device.get(), &Device::descriptorChanged, this, &Instrument::featuresChanged);
    }
    return true;
}

void Instrument::open()
{
    if (isBusy() || m_run || isOpen() || !m_isAttached)
        return;
    m_problem.clear();
    if (!makeDevice()) {
        Q_EMIT changed();
        return;
    }
    RunRequest request;
    request.deadline = std::chrono::seconds(60);
    begin(request);
    setState(Opening);
}

void Instrument::readFirmware()
{
    if (isBusy() || m_run || !isOpen())
        return;
    m_problem.clear();
    m_order = Order();
    m_order.feature = Device::DF_FirmwareInfo;
    RunRequest request;
    request.feature = m_order.feature;
    request.deadline = std::chrono::seconds(60);
    begin(request);
    setState(Measuring);
}

void Instrument::start(const Order &order)
{
    if (isBusy() || m_run)
        return;
    m_problem.clear();
    m_order = order;
    m_number = 0;
    m_isCancelled = false;
    m_seriesId = order.count > 1 ? QUuid::createUuid().toString(QUuid::WithoutBraces) : QString();
    m_isSeries = true;
    if (!makeDevice()) {
        m_isSeries = false;
        Q_EMIT changed();
        Q_EMIT finished();
        return;
    }
    startRun();
}

void Instrument::startRun()
{
    ++m_number;
    m_nextStart = QDateTime::currentDateTimeUtc().addMSecs(m_order.interval);
    RunRequest request;
    request.feature = m_order.feature;
    request.configure = [configuration = m_order.configuration](const QVariant &descriptor,
                                                                QString *problem) {
        QStringList problems;
        const auto record = readConfiguration(configuration, descriptor, &problems);
        *problem = problems.join(QStringLiteral(". "));
        return record;
    };
    begin(request);
    setState(isOpen() ? Measuring : Opening);
}

void Instrument::begin(RunRequest request)
{
    m_progress = -1;
    m_clock.start();
    m_run = std::make_unique<Run>(m_device.get(), std::move(request));
    connect(m_run.get(), &Run::progressChanged, this, [this](double progress) {
        m_progress = progress;
        Q_EMIT changed();
    });
    connect(m_run.get(), &Run::stateChanged, this, [this](Run::State state) {
        // Just before open(), setConfiguration(), execute() and the first step of a cancellation.
        if (state == Run::Opening || state == Run::Preparing || state == Run::Starting
            || state == Run::Stopping)
            Q_EMIT calling(m_info.driver());
        if (state == Run::Executing)
            setState(Measuring);
        else if (state == Run::Stopping)
            setState(Stopping);
    });
    connect(m_run.get(), &Run::actionRequired, this, [this](int id, const QString &action) {
        m_actionId = id;
        m_action = action;
        setState(NeedsUser);
    });
    connect(m_run.get(), &Run::finished, this, &Instrument::onRunFinished);
    m_run->start();
}

void Instrument::confirmAction()
{
    if (m_action.isEmpty() || !m_run)
        return;
    m_action.clear();
    setState(Measuring);
    Q_EMIT calling(m_info.driver());
    m_run->confirmAction(m_actionId);
}

void Instrument::abortAction()
{
    if (m_action.isEmpty() || !m_run)
        return;
    m_action.clear();
    m_isCancelled = true;
    m_run->abortAction(m_actionId);
}

void Instrument::cancel()
{
    m_isCancelled = true;
    if (m_run) {
        m_run->cancel();
    } else if (m_pause.isActive()) {
        m_pause.stop();
        m_number -= 1;
        goOn();
    }
}

void Instrument::onRunFinished(const Outcome &delivered)
{
    const Outcome outcome = delivered; // the run, which holds it, goes now
    m_action.clear();
    m_run.reset();
    if (!outcome.isResult()) {
        m_problem = sentence(outcome.sentence);
        if (!outcome.additionalInfo.isEmpty())
            m_problem += QLatin1Char(' ') + sentence(outcome.additionalInfo);
        if (outcome.kind == Outcome::AbortedByUser)
            m_problem = text("qelworkbench-cancelled");
        m_isCancelled = true;
    }
    const bool isFirmware =
        m_order.feature == Device::DF_FirmwareInfo || m_order.feature == Device::DF_FirmwareUpdate;
    if (isFirmware && outcome.result.isValid())
        m_firmware = outcome.result;
    if (m_isSeries && (outcome.isResult() || outcome.delivered.isValid()))
        onMeasured(outcome);
    if (m_isSeries)
        goOn();
    else
        setState(restingState());
    Q_EMIT featuresChanged();
}

void Instrument::onMeasured(const Outcome &outcome)
{
    Unkept run{{m_info, pluginOfDevice(*m_device), m_order.feature,
                m_device->descriptor(m_order.feature), m_device->configuration(m_order.feature),
                outcome},
               {m_seriesId, m_number, m_order.count},
               m_order.name};
    if (!keep(run))
        m_unkept.append(run);
}

bool Instrument::keep(const Unkept &run)
{
    QString problem;
    const auto file = m_store->keep(run.record, run.mark, &problem);
    if (!file) {
        m_problem = sentence(problem);
        return false;
    }
    if (!run.record.outcome.isResult()) {
        m_problem += QLatin1Char(' ') + text("qelworkbench-delivered-kept", *file);
        return true;
    }
    if (!run.name.isEmpty() && !m_store->annotate(*file, run.name, QString(), &problem))
        m_problem = sentence(problem);
    Q_EMIT kept(*file);
    return true;
}

bool Instrument::keepAgain()
{
    m_problem.clear();
    while (!m_unkept.isEmpty() && keep(m_unkept.constFirst()))
        m_unkept.removeFirst();
    Q_EMIT changed();
    return m_unkept.isEmpty();
}

void Instrument::goOn()
{
    if (!m_isCancelled && m_number < m_order.count) {
        // A run that took longer than the interval is followed by the next at once.
        const qint64 rest = QDateTime::currentDateTimeUtc().msecsTo(m_nextStart);
        m_pause.start(int(std::max<qint64>(0, rest)));
        setState(Pausing);
        return;
    }
    m_isSeries = false;
    setState(restingState());
    Q_EMIT finished();
}

void Instrument::setState(State state)
{
    m_state = state;
    Q_EMIT changed();
}

Instrument::State Instrument::restingState() const
{
    if (!m_isAttached)
        return Gone;
    return isOpen() ? Ready : Closed;
}

} // namespace qelworkbench
