#include "commands.h"
#include "output.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <utility>

#include <algorithm>
#include <iterator>

namespace qelctl {

namespace {

// Also a name of a CMake target, of a folder and of translation ids.
bool isDriverName(const QString &name)
{
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(QStringLiteral("[a-z][a-z0-9_-]{0,63}")));
    // The targets that every CMake project has.
    static const QStringList reserved{
        QStringLiteral("all"),
        QStringLiteral("clean"),
        QStringLiteral("edit_cache"),
        QStringLiteral("help"),
        QStringLiteral("install"),
        QStringLiteral("package"),
        QStringLiteral("package_source"),
        QStringLiteral("preinstall"),
        QStringLiteral("rebuild_cache"),
        QStringLiteral("test"),
    };
    return pattern.match(name).hasMatch() && !reserved.contains(name);
}

// How the driver reaches its instrument. The first only plays one.
const QLatin1String links[] = {QLatin1String("none"), QLatin1String("serial"),
                               QLatin1String("tcp")};
const QLatin1String playedLink = links[0];

// A sentence when the file cannot be written.
QString writeFile(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(content) < 0
        || !file.flush())
        return text("qelctl-new-driver-cannot-write", fileName, file.errorString());
    return {};
}

// The templates are those of every driver, and those of its `link`.
QString writeAll(const QString &name, const QString &link, const QString &folder)
{
    const QDir templates(QStringLiteral(":/qel/newdriver"));
    QFileInfoList files = templates.entryInfoList(QDir::Files);
    files += QDir(templates.filePath(link)).entryInfoList(QDir::Files);
    const QString variable = name.toUpper().replace(QLatin1Char('-'), QLatin1Char('_'));
    for (const QFileInfo &file : std::as_const(files)) {
        if (file.fileName() == QLatin1String("emulator.py") && link == playedLink)
            continue;
        QFile source(file.filePath());
        if (!source.open(QIODevice::ReadOnly))
            return source.errorString();
        const QByteArray content = source.readAll()
                                       .replace("@name@", name.toLatin1())
                                       .replace("@NAME@", variable.toLatin1());
        const QString problem = writeFile(folder + QLatin1Char('/') + file.fileName(), content);
        if (!problem.isEmpty())
            return problem;
    }
    return {};
}

int run(const QStringList &arguments)
{
    CommandLine line(newDriverCommand);
    line.addArgument(QStringLiteral("NAME"), "qelctl-new-driver-argument-name");
    line.addArgument(QStringLiteral("[DIRECTORY]"), "qelctl-new-driver-argument-directory");
    line.addOption({QStringLiteral("link")}, "qelctl-new-driver-option-link",
                   QStringLiteral("LINK"));
    if (const auto ended = line.parse(arguments, 1, 2))
        return *ended;

    const QString name = line.positional().constFirst();
    if (!isDriverName(name))
        return fail(BadUsage, text("qelctl-new-driver-no-name", name));
    const QString link =
        line.has(QStringLiteral("link")) ? line.value(QStringLiteral("link")) : playedLink;
    if (std::find(std::begin(links), std::end(links), link) == std::end(links))
        return fail(BadUsage, text("qelctl-new-driver-no-link", link));
    const QString folder = line.positional().value(1, name);
    // Whatever stands there is somebody's work.
    if (QDir(folder).exists() && !QDir(folder).isEmpty())
        return fail(BadUsage, text("qelctl-new-driver-not-empty", folder));
    if (!QDir().mkpath(folder))
        return fail(CannotWrite, text("qelctl-new-driver-no-folder", folder));
    const QString problem = writeAll(name, link, folder);
    if (!problem.isEmpty())
        return fail(CannotWrite, problem);
    return printData(text("qelctl-new-driver-done", folder, name).toLocal8Bit());
}

} // namespace

const Command newDriverCommand{"new-driver", "qelctl-new-driver-summary",
                               "qelctl-new-driver-details", &run};

} // namespace qelctl
