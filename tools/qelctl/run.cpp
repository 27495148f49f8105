#include "commands.h"
#include "interrupt.h"
#include "output.h"
#include "prompt.h"
#include "resultformat.h"
#include "statusline.h"
#include "target.h"

#include <qelfrontend/configuration.h>
#include <qelfrontend/problems.h>
#include <qelfrontend/run.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QTimer>

#include <algorithm>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

namespace {

// What the command line asks for.
struct Request
{
    Device::DeviceFeature feature = Device::DF_None;
    QJsonObject configuration;
    QStringList assignments; // KEY=VALUE
    Format format = Format::Table;
    Prompt::Policy policy = Prompt::Policy::Ask;
    int timeout = 600000; // ms; a driver that never answers must not hang a script
    int repeat = 1;
    int interval = 0; // ms from the start of one run to the start of the next
};

// JSON as it stands, or the name of a file behind "@". Nothing after a complaint.
std::optional<QJsonObject> readConfigurationOption(const QString &value)
{
    QByteArray json = value.toUtf8();
    if (value.startsWith(QLatin1Char('@'))) {
        QFile file(value.mid(1));
        if (!file.open(QIODevice::ReadOnly)) {
            complain(text("qelctl-cannot-read", file.fileName(), file.errorString()));
            return std::nullopt;
        }
        json = file.readAll();
    }
    Problem problem;
    const auto parsed = parseJson(json, &problem);
    if (parsed && parsed->isObject())
        return parsed->toObject();
    const QString reason = parsed ? QString() : sentence(explain(problem));
    complain(text("qelctl-run-config-no-object", reason).trimmed());
    return std::nullopt;
}

// A Done request, or the exit code after a complaint.
int readOptions(const CommandLine &line, Request *request)
{
    if (line.has(QStringLiteral("config"))) {
        const auto configuration = readConfigurationOption(line.value(QStringLiteral("config")));
        if (!configuration)
            return BadUsage;
        request->configuration = *configuration;
    }
    if (line.has(QStringLiteral("no-progress")))
        hideProgress();
    request->assignments = line.values(QStringLiteral("set"));
    if (line.has(QStringLiteral("yes")) && line.has(QStringLiteral("no-input")))
        return fail(BadUsage, text("qelctl-run-yes-and-no"));
    if (line.has(QStringLiteral("yes")))
        request->policy = Prompt::Policy::Confirm;
    if (line.has(QStringLiteral("no-input")))
        request->policy = Prompt::Policy::Abort;

    const auto number = [&](const char *name, int *target, auto read, int minimum) {
        const QString option = QString::fromLatin1(name);
        if (!line.has(option))
            return true;
        const std::optional<int> value = read(option, line.value(option), minimum);
        *target = value.value_or(0);
        return value.has_value();
    };
    if (!number("timeout", &request->timeout, &readSeconds, 1)
        || !number("interval", &request->interval, &readSeconds, 0)
        || !number("repeat", &request->repeat, &readCount, 1))
        return BadUsage;
    if (line.has(QStringLiteral("output")) && line.value(QStringLiteral("output")).isEmpty())
        return fail(BadUsage, text("qelctl-run-no-file"));

    const QString format = line.value(QStringLiteral("format"));
    if (!format.isEmpty()) {
        const auto known = formatNamed(format);
        if (!known)
            return fail(BadUsage, text("qelctl-run-no-such-format", format));
        request->format = *known;
    }
    return Done;
}

// The runs of one command, one after another, on one device.
class Runs
{
public:
    Runs(Device *device, const Request &request, Output *output, Interrupt *interrupt);

    // An exit code; a complaint has been printed unless it is Done.
    int perform();

private:
    RunRequest makeRunRequest();
    int performOne(int number);
    int write(const Outcome &outcome, int number);
    void waitFor(qint64 milliseconds);

    Device *m_device;
    Request m_request;
    Output *m_output;
    Interrupt *m_interrupt;
    Prompt m_prompt;
    bool m_configurationRefused = false;
};

Runs::Runs(Device *device, const Request &request, Output *output, Interrupt *interrupt)
    : m_device(device)
    , m_request(request)
    , m_output(output)
    , m_interrupt(interrupt)
    , m_prompt(request.policy)
{ }

RunRequest Runs::makeRunRequest()
{
    RunRequest run;
    run.feature = m_request.feature;
    run.deadline = std::chrono::milliseconds(m_request.timeout);
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

int Runs::perform()
{
    for (int number = 0; number < m_request.repeat; ++number) {
        QElapsedTimer clock;
        clock.start();
        if (const int code = performOne(number); code != Done)
            return code;
        if (number + 1 < m_request.repeat)
            waitFor(m_request.interval - clock.elapsed());
        if (m_interrupt->wasRequested())
            return fail(Interrupted, text("qelctl-interrupted"));
    }
    QString problem;
    return m_output->commit(&problem) ? int(Done) : fail(CannotWrite, problem);
}

int Runs::performOne(int number)
{
    Run run(m_device, makeRunRequest());
    QElapsedTimer clock;
    clock.start();
    QObject::connect(&run, &Run::progressChanged, &run,
                     [&](double progress) { showProgress(progress, clock.elapsed()); });
    QObject::connect(&run, &Run::actionRequired, &m_prompt,
                     [&](int id, const QString &action) { m_prompt.ask(&run, id, action); });
    const Outcome outcome = await(&run, m_interrupt);
    clearStatus();
    if (m_interrupt->wasRequested())
        return fail(Interrupted, text("qelctl-interrupted"));
    if (outcome.isResult())
        return write(outcome, number);
    const int code = report(outcome, titleOf(m_device->deviceInfo()));
    if (m_configurationRefused)
        return BadUsage;
    if (outcome.kind == Outcome::Refused && !m_device->hasFeature(m_request.feature))
        return NoSuchDevice;
    return code;
}

int Runs::write(const Outcome &outcome, int number)
{
    ResultContext context{m_device, m_request.feature, number, m_request.repeat > 1,
                          m_output->isTerminal()};
    QString problem;
    const auto data = formatResult(outcome, m_request.format, context, &problem);
    if (!data)
        return fail(RunFailed,
                    titleOf(m_device->deviceInfo()) + QStringLiteral(": ") + sentence(problem));
    return m_output->write(*data, &problem) ? int(Done) : fail(CannotWrite, problem);
}

void Runs::waitFor(qint64 milliseconds)
{
    if (milliseconds <= 0)
        return;
    QEventLoop loop;
    QTimer::singleShot(int(milliseconds), &loop, &QEventLoop::quit);
    QObject::connect(m_interrupt, &Interrupt::requested, &loop, &QEventLoop::quit);
    loop.exec();
}

void declare(CommandLine *line)
{
    line->addOption({QStringLiteral("config")}, "qelctl-run-option-config",
                    QStringLiteral("JSON|@FILE"));
    line->addOption({QStringLiteral("set")}, "qelctl-run-option-set", QStringLiteral("KEY=VALUE"));
    line->addOption({QStringLiteral("timeout")}, "qelctl-run-option-timeout", QStringLiteral("S"));
    line->addOption({QStringLiteral("yes")}, "qelctl-run-option-yes");
    line->addOption({QStringLiteral("no-input")}, "qelctl-run-option-no-input");
    line->addOption({QStringLiteral("format")}, "qelctl-run-option-format",
                    QStringLiteral("table|plate|csv|json"));
    line->addOption({QStringLiteral("output")}, "qelctl-run-option-output", QStringLiteral("FILE"));
    line->addOption({QStringLiteral("force")}, "qelctl-run-option-force");
    line->addOption({QStringLiteral("repeat")}, "qelctl-run-option-repeat", QStringLiteral("N"));
    line->addOption({QStringLiteral("interval")}, "qelctl-run-option-interval",
                    QStringLiteral("S"));
    line->addOption({QStringLiteral("no-progress")}, "qelctl-run-option-no-progress");
    line->addArgument(QStringLiteral("DEVICE"), "qelctl-argument-device");
    line->addArgument(QStringLiteral("FEATURE"), "qelctl-argument-feature");
}

int run(const QStringList &arguments)
{
    CommandLine line(runCommand);
    declare(&line);
    if (const auto ended = line.parse(arguments, 2, 2))
        return *ended;
    Request request;
    if (const int code = readOptions(line, &request); code != Done)
        return code;
    QString problem;
    const auto feature = selectFeature(line.positional().at(1), &problem);
    if (!feature)
        return fail(NoSuchDevice, sentence(problem));
    request.feature = *feature;
    if (!isFormatFor(request.format, request.feature))
        return fail(BadUsage, text("qelctl-run-no-plate", featureArgument(request.feature)));
    // Before the run: an operator should not lose a measurement to a mistyped path.
    const auto output = Output::open(line.value(QStringLiteral("output")),
                                     line.has(QStringLiteral("force")), &problem);
    if (!output)
        return fail(CannotWrite, problem);

    startLibrary();
    const auto device = createTarget(line.positional().at(0));
    if (!device)
        return NoSuchDevice;
    Interrupt interrupt;
    const int code = Runs(device.get(), request, output.get(), &interrupt).perform();
    closeTarget(device.get());
    return code;
}

} // namespace

const Command runCommand{"run", "qelctl-run-summary", "qelctl-run-details", &run};

} // namespace qelctl
