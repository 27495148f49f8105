#include "commands.h"
#include "listing.h"
#include "output.h"

#include <checker.h>
#include <report.h>
#include <soak.h>

#include <qelinspection/inspection.h>

#include <QtCore/QFileInfo>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <termios.h>
#include <unistd.h>

namespace qelctl {

using namespace qel::conformance;

namespace {

QByteArray asJson(const Report &report, const QString &fileName)
{
    QJsonObject json = document(QStringLiteral("qelctl-check"));
    const QJsonObject content = toJson(report, fileName);
    for (auto it = content.begin(); it != content.end(); ++it)
        json.insert(it.key(), it.value());
    return indented(json);
}

std::optional<QVector<int>> readRules(const QStringList &values)
{
    QVector<int> numbers;
    for (const QString &value : values) {
        const auto &rules = allRules();
        const bool isKnown = std::any_of(rules.cbegin(), rules.cend(), [&](const Rule &rule) {
            return QString::number(rule.number) == value;
        });
        if (!isKnown) {
            complain(text("qelctl-check-no-such-rule", value));
            return std::nullopt;
        }
        numbers.append(value.toInt());
    }
    return numbers;
}

// Prints each result at once: a check may take minutes.
Report checkAsText(Checker *checker, int *printed)
{
    std::optional<Result> previous;
    const Report report = checker->run([&](const Result &result) {
        if (*printed == Done)
            *printed = printData(toText(result, previous ? &*previous : nullptr).toUtf8());
        previous = result;
    });
    if (*printed == Done && report.error.isEmpty())
        *printed = printData('\n' + summary(report).toUtf8());
    return report;
}

int check(const Request &request, const QString &format)
{
    Checker checker(request);
    Report report;
    int printed = Done;
    if (format == QLatin1String("text")) {
        report = checkAsText(&checker, &printed);
    } else {
        report = checker.run();
        printed = printData(format == QLatin1String("json") ? asJson(report, request.fileName)
                                                            : toJUnit(report, request.fileName));
    }
    if (!report.error.isEmpty())
        return fail(NoSuchDevice, report.error);
    if (printed != Done)
        return printed;
    if (report.count(Judgement::Failed) > 0)
        return RunFailed;
    return report.isIncomplete() ? Incomplete : Done;
}

// Has a person at the terminal do what the driver asks for.
bool askPerson(const QString &request)
{
    // What was typed before the question is no answer to it.
    ::tcflush(STDIN_FILENO, TCIFLUSH);
    std::fputs(qPrintable(text("qelctl-check-ask", request) + QLatin1Char(' ')), stderr);
    char answer[256];
    if (!std::fgets(answer, sizeof answer, stdin))
        return false;
    const QString line = QString::fromLocal8Bit(answer).trimmed().toLower();
    const QStringList yes{QString(), QStringLiteral("y"), QStringLiteral("yes"),
                          QStringLiteral("j"), QStringLiteral("ja")};
    return yes.contains(line);
}

bool isPersonThere()
{
    return ::isatty(STDIN_FILENO) && ::isatty(STDERR_FILENO);
}

// The plugin that has others in processes of their own; empty when it is not installed.
QString findHost()
{
    const auto folders = globalOptions().pluginFolders + qel::inspection::pluginFolders();
    for (const QString &folder : folders) {
        const QFileInfo file(folder + QStringLiteral("/isolation.so"));
        if (file.isFile())
            return file.absoluteFilePath();
    }
    return {};
}

Answers answersFor(bool saysYes)
{
    if (saysYes)
        return Answers::Confirm;
    return isPersonThere() ? Answers::Ask : Answers::Decline;
}

// "90", "90s", "10m" or "2h" in seconds; nothing for anything else.
std::optional<int> readDuration(const QString &value)
{
    const QRegularExpression form(QStringLiteral("^([1-9][0-9]{0,5})([smh]?)$"));
    const auto match = form.match(value);
    if (!match.hasMatch())
        return std::nullopt;
    const QString unit = match.captured(2);
    const int factor = unit == QLatin1String("h") ? 3600 : unit == QLatin1String("m") ? 60 : 1;
    return match.captured(1).toInt() * factor;
}

int soakFor(const Request &request, const QString &duration, const QString &seedText)
{
    const auto seconds = readDuration(duration);
    if (!seconds)
        return fail(BadUsage, text("qelctl-check-no-such-duration", duration));
    bool isNumber = true;
    const quint32 seed =
        seedText.isEmpty() ? QRandomGenerator::global()->generate() : seedText.toUInt(&isNumber);
    if (!isNumber)
        return fail(BadUsage, text("qelctl-check-no-such-seed", seedText));
    const SoakReport report = soak(request, *seconds, seed);
    if (!report.error.isEmpty())
        return fail(Incomplete, report.error);
    const int printed = printData(toText(report).toUtf8());
    if (printed != Done)
        return printed;
    return report.fault.isEmpty() ? Done : RunFailed;
}

int run(const QStringList &arguments)
{
    CommandLine line(checkCommand);
    line.addOption({QStringLiteral("driver")}, "qelctl-check-option-driver",
                   QStringLiteral("NAME"));
    line.addOption({QStringLiteral("device")}, "qelctl-check-option-device",
                   QStringLiteral("SERIAL"));
    line.addOption({QStringLiteral("rule")}, "qelctl-check-option-rule", QStringLiteral("N"));
    line.addOption({QStringLiteral("isolated")}, "qelctl-check-option-isolated");
    line.addOption({QStringLiteral("unsafe")}, "qelctl-check-option-unsafe");
    line.addOption({QStringLiteral("yes")}, "qelctl-check-option-yes");
    line.addOption({QStringLiteral("guided")}, "qelctl-check-option-guided");
    line.addOption({QStringLiteral("run-limit")}, "qelctl-check-option-run-limit",
                   QStringLiteral("SECONDS"));
    line.addOption({QStringLiteral("soak")}, "qelctl-check-option-soak",
                   QStringLiteral("DURATION"));
    line.addOption({QStringLiteral("seed")}, "qelctl-check-option-seed", QStringLiteral("N"));
    line.addOption({QStringLiteral("format")}, "qelctl-check-option-format",
                   QStringLiteral("text|json|junit"));
    line.addArgument(QStringLiteral("PLUGIN"), "qelctl-check-argument");
    if (const auto ended = line.parse(arguments, 1, 1))
        return *ended;

    Request request;
    request.fileName = line.positional().constFirst();
    if (!QFileInfo(request.fileName).isFile())
        return fail(BadUsage, text("qelctl-check-no-file", request.fileName));
    if (line.has(QStringLiteral("isolated"))) {
        request.host = findHost();
        if (request.host.isEmpty())
            return fail(BadUsage, text("qelctl-check-no-isolation"));
    }
    request.driver = line.value(QStringLiteral("driver"));
    request.serial = line.value(QStringLiteral("device"));
    request.isUnsafe = line.has(QStringLiteral("unsafe"));
    request.isGuided = line.has(QStringLiteral("guided"));
    if (request.isGuided && !isPersonThere())
        return fail(BadUsage, text("qelctl-check-nobody-there"));
    request.answers = answersFor(line.has(QStringLiteral("yes")));
    request.ask = askPerson;
    if (line.has(QStringLiteral("run-limit"))) {
        const QString value = line.value(QStringLiteral("run-limit"));
        bool isNumber = false;
        const int seconds = value.toInt(&isNumber);
        const int aDay = 86400;
        if (!isNumber || seconds < 1 || seconds > aDay)
            return fail(BadUsage, text("qelctl-check-no-such-limit", value));
        request.limits.run = 1000 * seconds;
    }
    if (line.has(QStringLiteral("soak"))) {
        for (const char *other : {"rule", "guided", "format"}) {
            if (line.has(QLatin1String(other)))
                return fail(BadUsage, text("qelctl-check-not-in-soak", QLatin1String(other)));
        }
        return soakFor(request, line.value(QStringLiteral("soak")),
                       line.value(QStringLiteral("seed")));
    }
    const auto rules = readRules(line.values(QStringLiteral("rule")));
    if (!rules)
        return BadUsage;
    request.rules = *rules;
    const QString format = line.has(QStringLiteral("format")) ? line.value(QStringLiteral("format"))
                                                              : QStringLiteral("text");
    const QStringList formats{QStringLiteral("text"), QStringLiteral("json"),
                              QStringLiteral("junit")};
    if (!formats.contains(format))
        return fail(BadUsage, text("qelctl-check-no-such-format", format));
    return check(request, format);
}

} // namespace

const Command checkCommand{"check", "qelctl-check-summary", "qelctl-check-details", &run};

} // namespace qelctl
