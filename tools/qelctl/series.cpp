#include "series.h"

#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "statusline.h"
#include "target.h"
#include "tool.h"
#include "watchdog.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/runjson.h>

#include <QtCore/QDateTime>
#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <algorithm>

#include <unistd.h>

namespace qelctl {

using namespace qel::frontend;
using qel::devices::Device;

// A driver that never answers must not hang a script; one that shows progress may take its time.
constexpr std::chrono::minutes patience{10};

Series::Series(Device *device, const Request &request, Output *output, Interrupt *interrupt)
    : m_device(device)
    , m_request(request)
    , m_output(output)
    , m_interrupt(interrupt)
    , m_prompt(request.policy)
    , m_number(request.done)
{ }

RunRequest Series::makeRunRequest()
{
    RunRequest run;
    run.feature = m_request.feature;
    run.deadline = std::chrono::milliseconds(m_request.timeout.value_or(0));
    if (!m_request.timeout)
        run.stallLimit = patience;
    run.configure = [this](const QVariant &descriptor, QString *problem) {
        QJsonObject configuration = m_request.configuration;
        QStringList problems;
        for (const QString &assignment : qAsConst(m_request.assignments)) {
            QString mistake;
            if (!assignSetting(&configuration, assignment, descriptor, &mistake))
                problems.append(mistake);
        }
        auto typed = readConfiguration(configuration, descriptor, &problems);
        if (problems.isEmpty() && typed)
            return typed;
        m_configurationRefused = true;
        std::transform(problems.begin(), problems.end(), problems.begin(), &sentence);
        *problem = problems.join(QLatin1Char(' '));
        return std::optional<QVariant>();
    };
    return run;
}

int Series::perform()
{
    if (m_request.repeat > 1) { // the time to open is no part of an interval
        if (const int code = open(); code != Done)
            return code;
    }
    QElapsedTimer clock;
    clock.start();
    qint64 due = 0;
    while (m_number < m_request.repeat) {
        ++m_number;
        if (const int code = performOne(); code != Done) {
            tellWhatIsKept();
            return code;
        }
        if (m_number < m_request.repeat && m_request.interval) {
            due += *m_request.interval;
            if (clock.elapsed() > due && !std::exchange(m_intervalTooShort, true))
                complain(text("qelctl-run-interval-short"));
            due = std::max(due, clock.elapsed());
            waitForNext(due - clock.elapsed());
        }
        if (m_interrupt->wasRequested() && m_number < m_request.repeat) {
            tellWhatIsKept();
            return fail(Interrupted, text("qelctl-interrupted"));
        }
    }
    return Done;
}

int Series::open()
{
    RunRequest request;
    request.deadline = std::chrono::milliseconds(m_request.timeout.value_or(60000));
    Run run(m_device, request);
    QObject::connect(&run, &Run::actionRequired, &m_prompt,
                     [&](int id, const QString &action) { m_prompt.ask(&run, id, action); });
    const Outcome outcome = await(&run, m_interrupt);
    clearStatus();
    return outcome.isResult() ? int(Done) : failed(outcome);
}

int Series::performOne()
{
    Run run(m_device, makeRunRequest());
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&run, &Run::progressChanged, &run,
                     [&](double progress) { tellProgress(progress, clock.elapsed()); });
    QObject::connect(&run, &Run::actionRequired, &m_prompt,
                     [&](int id, const QString &action) { m_prompt.ask(&run, id, action); });
    // What the run itself cannot do while a driver holds the event loop up.
    if (m_request.timeout)
        limitProcess(*m_request.timeout + ladderTime, TimedOut);
    const Outcome outcome = await(&run, m_interrupt);
    if (m_request.timeout && !m_interrupt->wasRequested())
        limitProcess(0, Done);
    clearStatus();
    return outcome.isResult() ? keep(outcome) : failed(outcome);
}

int Series::failed(const Outcome &outcome)
{
    int code = RunFailed;
    if (m_interrupt->wasRequested())
        code = fail(Interrupted, text("qelctl-interrupted"));
    else
        code = report(outcome, titleOf(m_device->deviceInfo()));
    if (code != Interrupted && m_configurationRefused)
        code = BadUsage;
    else if (outcome.kind == Outcome::Refused && !m_device->hasFeature(m_request.feature))
        code = NoSuchDevice;
    if (m_request.format == Format::Json)
        printData(errorDocument(outcome, code, contextOf()));
    return code;
}

ResultContext Series::contextOf() const
{
    ResultContext context;
    context.device = m_device;
    context.feature = m_request.feature;
    context.number = m_number;
    context.count = m_request.repeat;
    context.isFirst = m_number == 1;
    context.toTerminal = m_output->isTerminal();
    context.style = m_request.style;
    return context;
}

int Series::keep(const Outcome &outcome)
{
    QString problem;
    const auto data = formatResult(outcome, m_request.format, contextOf(), &problem);
    if (!data)
        return fail(RunFailed,
                    titleOf(m_device->deviceInfo()) + QStringLiteral(": ") + sentence(problem));
    if (m_output->write(*data, &problem)) {
        if (const QString kept = whatIsKept(m_number); !kept.isEmpty())
            setLastWords(kept);
        return Done;
    }
    const int code = fail(CannotWrite, problem);
    if (m_output->isFile()) { // what was measured goes wherever it can
        complain(text("qelctl-run-printed-instead"));
        printData(*data);
    }
    return code;
}

// Empty where there is nothing to say.
QString Series::whatIsKept(int runs) const
{
    if (m_request.repeat == 1 || !m_output->isFile() || runs == 0)
        return {};
    return text("qelctl-run-kept", QString::number(runs), QString::number(m_request.repeat),
                m_output->path());
}

void Series::tellWhatIsKept()
{
    if (const QString kept = whatIsKept(m_number - 1); !kept.isEmpty())
        complain(kept);
}

void Series::tellProgress(double progress, qint64 elapsed)
{
    if (!m_request.progressAsJson) {
        showProgress(progress, elapsed, m_number, m_request.repeat);
        return;
    }
    QJsonObject line = document(QStringLiteral("qeldevices-progress"));
    line.insert(QStringLiteral("run"), m_number);
    line.insert(QStringLiteral("of"), m_request.repeat);
    line.insert(QStringLiteral("progress"), progress);
    line.insert(QStringLiteral("elapsed"), double(elapsed) / 1000);
    const QByteArray text = inOneLine(line);
    if (write(STDERR_FILENO, text.constData(), size_t(text.size())) < 0)
        return; // nobody listens
}

void Series::waitForNext(qint64 milliseconds)
{
    if (milliseconds <= 0 || m_interrupt->wasRequested())
        return;
    const QDateTime next = QDateTime::currentDateTime().addMSecs(milliseconds);
    if (!m_request.progressAsJson) {
        showNext(text("qelctl-run-next", QString::number(m_number + 1),
                      QString::number(m_request.repeat),
                      next.toString(QStringLiteral("HH:mm:ss"))));
    }
    QEventLoop loop;
    QTimer::singleShot(int(milliseconds), Qt::PreciseTimer, &loop, &QEventLoop::quit);
    QObject::connect(m_interrupt, &Interrupt::requested, &loop, &QEventLoop::quit);
    loop.exec();
    clearStatus();
}

} // namespace qelctl
