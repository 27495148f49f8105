#include "reader.h"

#include <qeldevices/logging.h>
#include <qelvalues/features.h>
#include <qelvalues/settings.h>

#include <QtCore/QPointer>

#include <algorithm>
#include <utility>

namespace qel::simulator {

using namespace qel::devices;

static bool strikes(const QVector<Fault> &faults, Fault::Action action)
{
    return std::any_of(faults.cbegin(), faults.cend(),
                       [&](const Fault &fault) { return fault.action == action; });
}

// What a result looks like when the transfer broke off in the middle.
static QVariant half(const QVariant &result)
{
    QVariantHash hash = result.toHash();
    if (hash.isEmpty())
        return {};
    const QString values = QStringLiteral("values");
    if (hash.contains(values)) {
        QVariantList reads = hash.value(values).toList();
        for (QVariant &read : reads) {
            const auto wells = read.value<QVector<double>>();
            read = QVariant::fromValue(wells.mid(0, wells.size() / 2));
        }
        hash.insert(values, reads);
    } else {
        QStringList keys = hash.keys();
        std::sort(keys.begin(), keys.end()); // the hash's own order is another one in each process
        hash.remove(keys.constLast());
    }
    return hash;
}

// A value of a type that no reader expects in place of `result`.
static QVariant somethingElse(const QVariant &result)
{
    if (result.userType() == QMetaType::QString)
        return 42;
    return QStringLiteral("not a result");
}

Reader::Reader(const DeviceInfo &info, std::shared_ptr<SimulatedInstrument> instrument)
    : Device(info, nullptr)
    , m_instrument(std::move(instrument))
{
    m_ticks.setSingleShot(true);
    m_ticks.setTimerType(Qt::PreciseTimer);
    connect(&m_ticks, &QTimer::timeout, this, &Reader::tick);
    m_timedFaults.setSingleShot(true);
    m_timedFaults.setTimerType(Qt::PreciseTimer);
    connect(&m_timedFaults, &QTimer::timeout, this, [this] {
        m_instrument->passTime();
        waitForTimedFault();
    });
    connect(m_instrument.get(), &SimulatedInstrument::unplugged, this,
            [this] { lose(ERROR_DEVICE_DISCONNECTED, QStringLiteral("qelsimulator-unplugged")); });
    connect(m_instrument.get(), &SimulatedInstrument::plateChanged, this, [this] {
        if (isOpen())
            emit transientValue(DF_PlateDetection, QVariant::fromValue(m_instrument->slotStatus()));
    });
    connect(m_instrument.get(), &SimulatedInstrument::failed, this,
            [this](int code, const QString &details) {
                if (m_task)
                    end(false, {{}, code, details});
                else if (isOpen())
                    setError(code, details);
            });
    // First in line, so that the id is known when an application answers from its own slot.
    connect(this, &Device::actionRequired, this, [this](int actionId) {
        if (m_task)
            m_task->actionId = actionId;
    });
}

Reader::~Reader()
{
    if (isOpen() || m_task)
        m_instrument->inUse = false;
}

bool Reader::open()
{
    if (isOpen() || m_task)
        return true;
    m_instrument->passTime();
    if (!m_instrument->isPlugged()) {
        setError(ERROR_DEVICE_DISCONNECTED, QStringLiteral("qelsimulator-unplugged"));
        return false;
    }
    if (m_instrument->inUse) {
        setError(ERROR_DEVICE_CANT_OPEN, QStringLiteral("qelsimulator-in-use"));
        return false;
    }
    const QVector<Fault> faults = m_instrument->strike(Fault::Moment::Open);
    if (strikes(faults, Fault::Action::Refuse)) {
        setError(ERROR_DEVICE_CANT_OPEN, QStringLiteral("qelsimulator-refused"));
        return false;
    }
    m_instrument->inUse = true;
    Job job;
    job.seconds = 0.3;
    start(DF_None, job, faults);
    return true;
}

void Reader::close()
{
    if (!isOpen() && !m_task)
        return;
    const auto task = std::exchange(m_task, std::nullopt);
    m_ticks.stop();
    m_instrument->inUse = false;
    setStatus({});
    if (task && task->feature != DF_None)
        emit executed(task->feature, false);
}

// The connection is gone: as close(), but with an error.
void Reader::lose(int code, const QString &info)
{
    if (!isOpen() && !m_task)
        return;
    const auto task = std::exchange(m_task, std::nullopt);
    m_ticks.stop();
    setError(code, info);
    setStatus({});
    if (task && task->feature != DF_None)
        emit executed(task->feature, false);
}

void Reader::update()
{
    m_instrument->passTime();
}

void Reader::reset()
{
    const auto task = std::exchange(m_task, std::nullopt);
    m_ticks.stop();
    if (!isOpen() && task)
        m_instrument->inUse = false;
    setError(NO_DEVICE_ERROR, QString());
    setBusy(m_task.has_value());
    if (task && task->feature != DF_None)
        emit executed(task->feature, false);
}

void Reader::executeImpl(DeviceFeature feature)
{
    const auto refuse = [&](int code, const char *info) {
        setError(code, QString::fromLatin1(info));
        emit executed(feature, false);
    };
    if (m_task)
        return refuse(ERROR_DEVICE_NOT_READY, "qelsimulator-busy");

    const auto mistakes = values::checkConfiguration(configuration(feature), descriptor(feature));
    if (values::findFeature(feature)->configuration.type && !mistakes.isEmpty()) {
        qCWarning(LogCDriver).noquote()
            << QStringLiteral("Simulator '%1': %2").arg(serial(), toString(mistakes));
        return refuse(ERROR_DEVICE_INVALID_CONFIGURATION, "qelsimulator-configuration");
    }
    const QVector<Fault> faults = m_instrument->strike(Fault::Moment::Execute, feature);
    if (strikes(faults, Fault::Action::Refuse))
        return refuse(ERROR_DEVICE_NOT_READY, "qelsimulator-refused");
    const Job job = jobFor(feature, configuration(feature).toHash(), *m_instrument);
    if (job.needsCalibration && !m_instrument->calibrated)
        return refuse(ERROR_DEVICE_NOT_CALIBRATED, "qelsimulator-calibrate");

    if (values::isMeasurement(feature))
        ++m_instrument->measurements;
    start(feature, job, faults);
}

void Reader::start(DeviceFeature feature, const Job &job, const QVector<Fault> &faults)
{
    // Ticks are a tenth of a second apart, and at least four, so that there is a middle.
    const double milliseconds = job.seconds * 1000 * m_instrument->description().timeScale;
    const int steps =
        job.seconds > 0 || !faults.isEmpty() ? std::clamp(int(milliseconds / 100), 4, 1000) : 0;
    const int number = ++m_taskNumber;
    m_task = Task{number, feature, job, faults, steps, int(milliseconds / std::max(steps, 1))};

    setError(NO_DEVICE_ERROR, QString());
    if (!goesOn(number))
        return;
    if (feature == DF_None) {
        waitForTimedFault();
    } else if (steps == 0) {
        finish();
        return;
    } else {
        setBusy(true);
        if (!goesOn(number) || !preparePlate())
            return;
        reportProgress();
    }
    if (goesOn(number))
        m_ticks.start(m_task->interval);
}

// Whether the task is still there: every signal may have ended it, and begun another.
bool Reader::goesOn(int taskNumber) const
{
    return m_task && m_task->number == taskNumber;
}

void Reader::tick()
{
    const int number = m_task->number;
    if (m_task->step >= m_task->steps / 2 && !strikeFaults())
        return;
    if (++m_task->step >= m_task->steps) {
        finish();
        return;
    }
    reportProgress();
    if (goesOn(number))
        m_ticks.start(m_task->interval);
}

void Reader::reportProgress()
{
    if (!m_task->job.reportsProgress)
        return;
    const double progress = double(m_task->step) / m_task->steps;
    emit transientValue(m_task->feature, QVariantHash{{QStringLiteral("progress"), progress}});
}

// Lets the faults in the middle of a task strike, one after another. False when the task must wait
// or is no more.
bool Reader::strikeFaults()
{
    const int number = m_task->number;
    while (m_task->nextFault < m_task->faults.size()) {
        const Fault fault = m_task->faults.at(m_task->nextFault++);
        switch (fault.action) {
        case Fault::Action::Error:
            end(false, {{}, fault.code, fault.info});
            return false;
        case Fault::Action::Delay:
            m_ticks.start(fault.delay);
            return false;
        case Fault::Action::Stall:
            return false;
        case Fault::Action::Unplug:
            m_instrument->unplug(fault.absentFor);
            return false;
        case Fault::Action::Ask:
            ask(fault.text);
            if (!goesOn(number) || m_task->waiting)
                return false;
            break;
        default: // those that spoil the ending
            break;
        }
    }
    return true;
}

// Has the user bring the slot into the state that the task needs. False when the task must wait or
// is no more.
bool Reader::preparePlate()
{
    const int number = m_task->number;
    if (m_task->job.slot == Job::Slot::NeedsPlate && !m_instrument->hasPlate())
        ask(QStringLiteral("qelsimulator-action-insert-plate"));
    else if (m_task->job.slot == Job::Slot::NeedsEmpty && m_instrument->hasPlate())
        ask(QStringLiteral("qelsimulator-action-empty-slot"));
    return goesOn(number) && !m_task->waiting;
}

void Reader::ask(const QString &text)
{
    m_task->waiting = true;
    m_ticks.stop();
    emitActionRequired(QString(text));
}

void Reader::confirmActionImpl(int actionId)
{
    answer(actionId, true);
}

void Reader::abortActionImpl(int actionId)
{
    answer(actionId, false);
}

void Reader::answer(int actionId, bool confirmed)
{
    if (!m_task || !m_task->waiting || actionId != m_task->actionId)
        return;
    const int number = m_task->number;
    m_task->waiting = false;
    if (!confirmed) {
        const bool opening = m_task->feature == DF_None;
        end(false, {{}, opening ? ERROR_DEVICE_NOT_READY : NO_DEVICE_ERROR, QString()});
        return;
    }
    if (m_task->job.slot != Job::Slot::DoesNotMatter)
        m_instrument->setHasPlate(m_task->job.slot == Job::Slot::NeedsPlate);
    if (goesOn(number))
        m_ticks.start(m_task->interval);
}

void Reader::finish()
{
    const int number = m_task->number;
    if (m_task->feature == DF_None) {
        finishOpening();
        return;
    }
    const Task task = *m_task;
    JobOutcome outcome = task.job.finish(*m_instrument);
    m_instrument->clock += task.job.seconds;
    if (strikes(task.faults, Fault::Action::PartialData))
        outcome.result = half(outcome.result);
    if (strikes(task.faults, Fault::Action::WrongType))
        outcome.result = somethingElse(outcome.result);
    const bool ok = outcome.code == NO_DEVICE_ERROR;
    if (ok && task.steps > 0) {
        m_task->step = task.steps;
        reportProgress();
        if (!goesOn(number))
            return;
    }
    if (strikes(task.faults, Fault::Action::DropEnding))
        end(ok, outcome, 0);
    else
        end(ok, outcome, strikes(task.faults, Fault::Action::DoubleEnding) ? 2 : 1);
}

void Reader::finishOpening()
{
    const int number = m_task->number;
    if (m_instrument->description().apiVersion > 1) {
        end(false, {{}, ERROR_DEVICE_API_TOO_NEW, QStringLiteral("qelsimulator-new-protocol")});
        return;
    }
    const auto features = m_instrument->model().features;
    for (const DeviceFeature feature : features) {
        setDescriptor(feature, descriptorOf(feature, m_instrument->model()));
        addFeature(feature);
    }
    if (!goesOn(number))
        return;
    m_task.reset();
    setOpen(true);
}

void Reader::end(bool ok, const JobOutcome &outcome, int endings)
{
    const Task task = *std::exchange(m_task, std::nullopt);
    m_ticks.stop();
    if (task.feature == DF_None) {
        m_instrument->inUse = false;
        setError(outcome.code, outcome.info);
        return;
    }
    const QPointer<Reader> alive(this);
    setError(outcome.code, outcome.info);
    if (alive)
        setBusy(m_task.has_value());
    for (int i = 0; i < endings && alive; ++i)
        emit executed(task.feature, ok, ok ? outcome.result : QVariant());
}

// A closed device does not wait: what is due by then happens when somebody looks.
void Reader::waitForTimedFault()
{
    const int wait = m_instrument->nextTimedFault();
    if (wait >= 0 && (isOpen() || m_task))
        m_timedFaults.start(wait);
}

} // namespace qel::simulator
