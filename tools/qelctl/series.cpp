#include "series.h"

#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "statusline.h"
#include "target.h"
#include "tool.h"
#include "watchdog.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/resultfile.h>
#include <qelfrontend/runjson.h>

#include <QtCore/QDateTime>
#include <QtCore/QEventLoop>
#include <QtCore/QFileInfo>
#include <QtCore/QTimer>

#include <algorithm>

#include <unistd.h>

namespace qelctl {

using namespace qel::frontend;
using qel::devices::Device;

Series::Series(Device *device, const Request &request, Output *output, Interrupt *interrupt)
    : m_device(device)
    , m_request(request)
    , m_output(output)
    , m_interrupt(interrupt)
    , m_prompt(request.policy)
    , m_number(request.earlier.runs)
{ }

RunRequest Series::makeRunRequest()
{
    RunRequest run;
    run.feature = m_request.feature;
    run.deadline = std::chrono::milliseconds(m_request.timeout.value_or(0));
    if (!m_request.timeout)
        run.stallLimit = std::chrono::milliseconds(patience);
    run.configure = [this](const QVariant &descriptor, QString *problem) {
        QJsonObject configuration = m_request.configuration;
        QStringList problems;
        for (const QString &assignment : qAsConst(m_request.assignments)) {
            QString mistake;
            if (!assignSetting(&configuration, assignment, descriptor, &mistake))
                problems.append(mistake);
        }
        auto typed = readConfiguration(configuration, descriptor, &problems);
        if (problems.isEmpty() && typed) {
            const QString other = differingSetting(
                m_request.earlier, writeConfiguration(*typed, descriptor), descriptor);
            if (other.isEmpty())
                return typed;
            problems.append(text("qelctl-run-resume-setting", m_output->path(), other));
        }
        m_configurationRefused = true;
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
    limitProcess(int(request.deadline.count()) + ladderTime, TimedOut);
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
    QTimer life;
    if (m_request.timeout) {
        limitProcess(*m_request.timeout + ladderTime, TimedOut);
    } else {
        life.callOnTimeout([this] { expectLife(); });
        life.start(1000);
        expectLife();
    }
    const Outcome outcome = await(&run, m_interrupt);
    if (!m_interrupt->wasRequested())
        limitProcess(0, Done);
    clearStatus();
    return outcome.isResult() ? keep(outcome) : failed(outcome);
}

// Whoever is interrupted has a limit of his own.
void Series::expectLife()
{
    if (!m_interrupt->wasRequested())
        limitProcess(patience, TimedOut);
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
    const QJsonObject document = errorDocument(outcome, code, contextOf());
    if (outcome.delivered.isValid())
        keepDelivered(document);
    if (m_request.format == Format::Json)
        printData(m_request.repeat > 1 ? inOneLine(document) : indented(document));
    return code;
}

// What came is no result, but may be all there is of a measurement: it is kept beside the results
// where they go to a file, and printed where nothing else holds it.
void Series::keepDelivered(const QJsonObject &document)
{
    const QString series =
        m_request.repeat > 1 ? QStringLiteral(".run-%1").arg(m_number) : QString();
    const QFileInfo results(m_output->path());
    const bool isBeside = m_output->isFile() && (!results.exists() || results.isFile());
    for (int i = 1; isBeside && i < 1000; ++i) {
        const QString number = i > 1 ? QStringLiteral("-%1").arg(i) : QString();
        const QString path = m_output->path() + series + QStringLiteral(".delivered") + number
            + QLatin1String(".json");
        QString problem;
        const auto file = ResultFile::open(path, ResultFile::Existing::Refuse, &problem);
        if (file && file->add(indented(document), &problem)) {
            complain(text("qelctl-run-delivered-kept", path));
            return;
        }
        if (!problem.isEmpty()) {
            complain(text("qelctl-cannot-write", path, problem));
            break;
        }
    }
    if (m_request.format == Format::Json)
        return; // on its way to standard output
    complain(text("qelctl-run-delivered-printed"));
    const QByteArray line = inOneLine(document);
    if (write(STDERR_FILENO, line.constData(), size_t(line.size())) < 0)
        return; // nobody listens
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
    if (!data) {
        Outcome unshaped = outcome;
        unshaped.kind = Outcome::Failed;
        unshaped.sentence = problem;
        std::swap(unshaped.result, unshaped.delivered);
        return failed(unshaped);
    }
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
