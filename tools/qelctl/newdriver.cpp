#include "commands.h"
#include "output.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QRegularExpression>

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

// A sentence when the file cannot be written.
QString writeFile(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly) || file.write(content) < 0
        || !file.flush())
        return text("qelctl-new-driver-cannot-write", fileName, file.errorString());
    return {};
}

QString writeAll(const QString &name, const QString &folder)
{
    const QDir templates(QStringLiteral(":/qel/newdriver"));
    const QStringList files = templates.entryList(QDir::Files);
    for (const QString &file : files) {
        QFile source(templates.filePath(file));
        if (!source.open(QIODevice::ReadOnly))
            return source.errorString();
        const QByteArray content = source.readAll().replace("@name@", name.toLatin1());
        const QString problem = writeFile(folder + QLatin1Char('/') + file, content);
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
    if (const auto ended = line.parse(arguments, 1, 2))
        return *ended;

    const QString name = line.positional().constFirst();
    if (!isDriverName(name))
        return fail(BadUsage, text("qelctl-new-driver-no-name", name));
    const QString folder = line.positional().value(1, name);
    // Whatever stands there is somebody's work.
    if (QDir(folder).exists() && !QDir(folder).isEmpty())
        return fail(BadUsage, text("qelctl-new-driver-not-empty", folder));
    if (!QDir().mkpath(folder))
        return fail(CannotWrite, text("qelctl-new-driver-no-folder", folder));
    const QString problem = writeAll(name, folder);
    if (!problem.isEmpty())
        return fail(CannotWrite, problem);
    return printData(text("qelctl-new-driver-done", folder, name).toLocal8Bit());
}

} // namespace

const Command newDriverCommand{"new-driver", "qelctl-new-driver-summary",
                               "qelctl-new-driver-details", &run};

} // namespace qelctl
