#include "tool.h"

#include "output.h"

#include <frontend.h>

#include <qeldevices/devicebroker.h>
#include <qeldevices/qeldevices_global.h>

#include <QtCore/QHash>
#include <QtCore/QLocale>
#include <QtCore/QLoggingCategory>

#include <cstdio>
#include <utility>

namespace qelctl {

static GlobalOptions &storedOptions()
{
    static GlobalOptions options;
    return options;
}

const GlobalOptions &globalOptions()
{
    return storedOptions();
}

void setGlobalOptions(const GlobalOptions &options)
{
    storedOptions() = options;
}

QString text(const char *id)
{
    return qtTrId(id);
}

void complain(const QString &message)
{
    const QByteArray line = "qelctl: " + message.toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

int fail(ExitCode code, const QString &message)
{
    clearProgress();
    complain(message);
    return code;
}

static void printLogMessage(QtMsgType, const QMessageLogContext &context, const QString &message)
{
    clearProgress();
    const QByteArray line = QByteArray(context.category) + ": " + message.toLocal8Bit() + '\n';
    std::fwrite(line.constData(), 1, size_t(line.size()), stderr);
    std::fflush(stderr);
}

// Everything from `level` on.
static QString rulesFor(const QString &level)
{
    const QStringList levels{QStringLiteral("debug"), QStringLiteral("info"),
                             QStringLiteral("warning")};
    QStringList rules;
    for (int i = 0; i < levels.size(); ++i) {
        const bool enabled = level != QLatin1String("quiet") && i >= levels.indexOf(level);
        rules.append(
            QStringLiteral("qel.devices*.%1=%2")
                .arg(levels.at(i), enabled ? QStringLiteral("true") : QStringLiteral("false")));
    }
    return rules.join(QLatin1Char('\n'));
}

void startLibrary()
{
    const QString log = globalOptions().log;
    qInstallMessageHandler(&printLogMessage);
    QLoggingCategory::setFilterRules(rulesFor(log.isEmpty() ? QStringLiteral("warning") : log));

    using qel::devices::DeviceBroker;
    // Before init(), so that it finds their catalogues; registered again after it, so that a driver
    // the user points at takes precedence over an installed one.
    for (const QString &folder : globalOptions().pluginFolders)
        DeviceBroker::loadAllDevicePlugins(folder);
    const auto preferred = DeviceBroker::DRIVERS;
    qel::devices::init();
    for (const auto &driver : preferred)
        DeviceBroker::addDriver(driver);
    qel::frontend::registerMetaTypes();

    // From here on the tool itself says in one line what the library would log about a device.
    if (log.isEmpty()) {
        QLoggingCategory::setFilterRules(rulesFor(QStringLiteral("warning"))
                                         + QStringLiteral("\nqel.devices.warning=false"));
    }
}

CommandLine::CommandLine(const Command &command)
    : m_name(QString::fromLatin1(command.name))
{
    m_parser.setApplicationDescription(text(command.details));
    addOption({QStringLiteral("h"), QStringLiteral("help")}, "qelctl-option-help");
}

void CommandLine::addOption(const QStringList &names, const char *description,
                            const QString &valueName)
{
    m_parser.addOption(QCommandLineOption(names, text(description), valueName));
}

void CommandLine::addArgument(const QString &name, const char *description)
{
    m_parser.addPositionalArgument(name, text(description), name);
}

std::optional<int> CommandLine::parse(const QStringList &arguments, int minimum, int maximum)
{
    // The parser takes the first for the program; it also shows it in the help.
    QStringList line = arguments;
    line[0] = QStringLiteral("qelctl ") + m_name;
    const bool parsed = m_parser.parse(line);
    if (m_parser.isSet(QStringLiteral("help"))) {
        QString help = m_parser.helpText();
        help.replace(QCoreApplication::arguments().constFirst(),
                     QStringLiteral("qelctl ") + m_name);
        return printData(help.toLocal8Bit());
    }
    if (!parsed) {
        return fail(BadUsage, text("qelctl-usage-error", m_parser.errorText(), m_name));
    }
    const int count = m_parser.positionalArguments().size();
    if (count < minimum)
        return fail(BadUsage, text("qelctl-argument-missing", m_name));
    if (count > maximum) {
        return fail(
            BadUsage,
            text("qelctl-argument-surplus", m_parser.positionalArguments().at(maximum), m_name));
    }
    return std::nullopt;
}

bool CommandLine::has(const QString &option) const
{
    return m_parser.isSet(option);
}

QString CommandLine::value(const QString &option) const
{
    return m_parser.value(option);
}

QStringList CommandLine::values(const QString &option) const
{
    return m_parser.values(option);
}

QStringList CommandLine::positional() const
{
    return m_parser.positionalArguments();
}

std::optional<int> readCount(const QString &option, const QString &value, int minimum)
{
    bool ok = false;
    const int count = value.toInt(&ok);
    if (ok && count >= minimum)
        return count;
    complain(text("qelctl-not-a-count", option, value, QString::number(minimum)));
    return std::nullopt;
}

std::optional<int> readSeconds(const QString &option, const QString &value)
{
    bool ok = false;
    const double seconds = QLocale::c().toDouble(value, &ok);
    if (ok && seconds > 0 && seconds <= 2000000)
        return std::max(1, int(seconds * 1000));
    complain(text("qelctl-not-a-time", option, value));
    return std::nullopt;
}

} // namespace qelctl
