#include "commands.h"
#include "interrupt.h"
#include "listing.h"
#include "output.h"
#include "resume.h"
#include "series.h"
#include "startup.h"
#include "statusline.h"
#include "target.h"
#include "watchdog.h"

#include <qelfrontend/problems.h>
#include <qelfrontend/selection.h>

#include <qelvalues/names.h>
#include <qelvalues/valuecodec.h>

#include <QtCore/QDateTime>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

namespace qelctl {

using namespace qel::frontend;
using namespace qel::values;
using qel::devices::Device;

namespace {

// JSON as it stands, or the name of a file behind "@". Nothing after a complaint.
std::optional<QJsonObject> readConfigurationOption(const QString &value)
{
    QByteArray json = value.toUtf8();
    if (value.startsWith(QLatin1Char('@'))) {
        QFile file(value.mid(1));
        // A pipe or a device may never end.
        if (QFileInfo::exists(file.fileName()) && !QFileInfo(file).isFile()) {
            complain(text("qelctl-no-plain-file", file.fileName()));
            return std::nullopt;
        }
        if (!file.open(QIODevice::ReadOnly)) {
            complain(text("qelctl-cannot-read", file.fileName(), file.errorString()));
            return std::nullopt;
        }
        json = file.read(maximumJsonSize + 1);
    }
    Problem problem;
    const auto parsed = parseJson(json, &problem);
    if (parsed && parsed->isObject())
        return parsed->toObject();
    const QString reason = parsed ? QString() : explain(problem);
    complain(text("qelctl-run-config-no-object", reason).trimmed());
    return std::nullopt;
}

// A single ASCII character that cannot be part of a number or a quotation.
bool isSeparator(const QString &text)
{
    return text.size() == 1 && QStringLiteral(",;.\t| ").contains(text);
}

// Done, or the exit code after a complaint.
int readStyle(const CommandLine &line, ResultStyle *style)
{
    style->note = line.value(QStringLiteral("note"));
    for (const auto &[option, target] : {std::pair(QStringLiteral("delimiter"), &style->delimiter),
                                         std::pair(QStringLiteral("decimal"), &style->decimal)}) {
        if (!line.has(option))
            continue;
        QString value = line.value(option);
        if (value == QLatin1String("\\t") || value == QLatin1String("tab"))
            value = QLatin1Char('\t');
        if (!isSeparator(value))
            return fail(BadUsage, text("qelctl-run-no-separator", option, value));
        *target = value.at(0).toLatin1();
    }
    if (style->delimiter == style->decimal)
        return fail(BadUsage, text("qelctl-run-same-separators"));
    return Done;
}

// Done, or the exit code after a complaint.
int readFormat(const CommandLine &line, Request *request)
{
    const QString path = line.value(QStringLiteral("output"));
    const QString name = line.value(QStringLiteral("format"));
    if (name.isEmpty()) {
        request->format = formatOfSuffix(path).value_or(Format::Table);
        return Done;
    }
    const auto known = formatNamed(name);
    if (!known)
        return fail(BadUsage, text("qelctl-run-no-such-format", name));
    if (!fitsSuffix(*known, path))
        return fail(BadUsage, text("qelctl-run-format-suffix", path, name));
    request->format = *known;
    return Done;
}

// Done, or the exit code after a complaint.
int readNumbers(const CommandLine &line, Request *request)
{
    const auto read = [&](const char *name, auto reader, int minimum, auto keep) {
        const QString option = QString::fromLatin1(name);
        if (!line.has(option))
            return true;
        const std::optional<int> value = reader(option, line.value(option), minimum);
        if (value)
            keep(*value);
        return value.has_value();
    };
    if (!read("timeout", &readSeconds, 1, [&](int value) { request->timeout = value; })
        || !read("interval", &readSeconds, 0, [&](int value) { request->interval = value; })
        || !read("repeat", &readCount, 1, [&](int value) { request->repeat = value; }))
        return BadUsage;
    if (request->interval && request->repeat == 1)
        return fail(BadUsage, text("qelctl-run-interval-alone"));
    return Done;
}

// Done, or the exit code after a complaint.
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
    const QString progress = line.value(QStringLiteral("progress"));
    if (!progress.isEmpty() && progress != QLatin1String("json"))
        return fail(BadUsage, text("qelctl-run-no-such-progress", progress));
    request->progressAsJson = !progress.isEmpty();
    request->assignments = line.values(QStringLiteral("set"));
    if (line.has(QStringLiteral("yes")) && line.has(QStringLiteral("no-input")))
        return fail(BadUsage, text("qelctl-run-yes-and-no"));
    if (line.has(QStringLiteral("yes")))
        request->policy = Prompt::Policy::Confirm;
    if (line.has(QStringLiteral("no-input")))
        request->policy = Prompt::Policy::Abort;
    if (line.has(QStringLiteral("output")) && line.value(QStringLiteral("output")).isEmpty())
        return fail(BadUsage, text("qelctl-run-no-file"));
    for (const auto read : {&readNumbers, &readFormat}) {
        if (const int code = read(line, request); code != Done)
            return code;
    }
    return readStyle(line, &request->style);
}

void declare(CommandLine *line)
{
    const auto option = [line](const char *name, const char *description, const char *value = "") {
        line->addOption({QString::fromLatin1(name)}, description, QString::fromLatin1(value));
    };
    option("config", "qelctl-run-option-config", "JSON|@FILE");
    option("set", "qelctl-run-option-set", "KEY=VALUE");
    option("exact", "qelctl-run-option-exact");
    option("timeout", "qelctl-run-option-timeout", "S");
    option("yes", "qelctl-run-option-yes");
    option("no-input", "qelctl-run-option-no-input");
    option("format", "qelctl-run-option-format", "table|plate|csv|json");
    option("delimiter", "qelctl-run-option-delimiter", "CHARACTER");
    option("decimal", "qelctl-run-option-decimal", "CHARACTER");
    option("note", "qelctl-run-option-note", "TEXT");
    option("output", "qelctl-run-option-output", "FILE");
    option("force", "qelctl-run-option-force");
    option("resume", "qelctl-run-option-resume");
    option("repeat", "qelctl-run-option-repeat", "N");
    option("interval", "qelctl-run-option-interval", "S");
    option("progress", "qelctl-run-option-progress", "json");
    option("no-progress", "qelctl-run-option-no-progress");
    line->addArgument(QStringLiteral("DEVICE"), "qelctl-argument-device");
    line->addArgument(QStringLiteral("FEATURE"), "qelctl-argument-feature");
}

// `pattern` with what is known in place of {serial}, {name}, {feature} and {time}; nothing after a
// complaint about another word.
std::optional<QString> fileName(QString pattern, const Device &device,
                                Device::DeviceFeature feature)
{
    static const QRegularExpression unfit(QStringLiteral("[^A-Za-z0-9._-]"));
    const auto fit = [](QString value) { return value.replace(unfit, QStringLiteral("_")); };
    pattern.replace(QLatin1String("{serial}"), fit(device.serial()));
    pattern.replace(QLatin1String("{name}"), fit(device.name()));
    pattern.replace(QLatin1String("{feature}"), featureArgument(feature));
    pattern.replace(
        QLatin1String("{time}"),
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'")));
    static const QRegularExpression word(QStringLiteral("\\{([a-z]*)\\}"));
    const auto unknown = word.match(pattern);
    if (!unknown.hasMatch())
        return pattern;
    complain(text("qelctl-run-no-placeholder", unknown.captured(0)));
    return std::nullopt;
}

int measure(const CommandLine &line, Request *request, Device *device)
{
    const auto path = fileName(line.value(QStringLiteral("output")), *device, request->feature);
    if (!path)
        return BadUsage;
    QString problem;
    auto existing =
        line.has(QStringLiteral("force")) ? Output::Existing::Replace : Output::Existing::Refuse;
    if (line.has(QStringLiteral("resume"))) {
        if (path->isEmpty() || *path == QLatin1String("-") || request->repeat == 1)
            return fail(BadUsage, text("qelctl-run-resume-what"));
        if (QFileInfo::exists(*path) && !QFileInfo(*path).isFile())
            return fail(BadUsage, text("qelctl-run-resume-none", *path));
        existing = Output::Existing::Continue;
    }
    // Before the run: an operator should not lose a measurement to a mistyped path.
    const auto output = Output::open(*path, existing, &problem);
    if (!output)
        return fail(CannotWrite, problem);
    if (existing == Output::Existing::Continue) {
        const auto earlier = finishedRuns(*path, request->format, request->style.delimiter,
                                          device->deviceInfo(), request->feature, &problem);
        if (!earlier)
            return fail(BadUsage, problem);
        request->earlier = *earlier;
    }
    Interrupt interrupt;
    request->isTold = true;
    const int code = Series(device, *request, output.get(), &interrupt).perform();
    closeTarget(device, interrupt, code);
    return code;
}

int perform(CommandLine *line, const QStringList &arguments, Request *request)
{
    if (const auto ended = line->parse(arguments, 2, 2))
        return *ended;
    if (const int code = readOptions(*line, request); code != Done)
        return code;
    QString problem;
    const auto feature = selectFeature(line->positional().at(1), &problem);
    if (!feature)
        return fail(NoSuchDevice, problem);
    request->feature = *feature;
    if (!isFormatFor(request->format, request->feature))
        return fail(BadUsage, text("qelctl-run-no-plate", featureArgument(request->feature)));

    // Also for plugins that hang while they are loaded or look for instruments.
    limitProcess(request->timeout.value_or(patience), TimedOut);
    startLibrary();
    // Nobody wants to flash the wrong instrument.
    const bool isExact =
        line->has(QStringLiteral("exact")) || request->feature == Device::DF_FirmwareUpdate;
    const auto device = createTarget(line->positional().at(0), isExact);
    return device ? measure(*line, request, device.get()) : int(NoSuchDevice);
}

// Whether documents are asked for, as far as a command line that may be wrong can tell.
bool wantsDocuments(const CommandLine &line)
{
    const QString format = line.value(QStringLiteral("format"));
    return format == QLatin1String("json")
        || (format.isEmpty()
            && formatOfSuffix(line.value(QStringLiteral("output"))) == Format::Json);
}

int run(const QStringList &arguments)
{
    CommandLine line(runCommand);
    declare(&line);
    Request request;
    const int code = perform(&line, arguments, &request);
    if (code != Done && !request.isTold && wantsDocuments(line))
        printData(indented(refusalDocument(request.feature, code)));
    return code;
}

} // namespace

const Command runCommand{"run", "qelctl-run-summary", "qelctl-run-details", &run};

} // namespace qelctl
