#include "driverinspection.h"

#include "text.h"

#include <qelinspection/loadtrial.h>

#include <qeldevices/devicebroker.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QThread>

namespace qelworkbench {

using namespace qel::inspection;

namespace {

const char trialArgument[] = "--serve-load-trial";

QString translated(const char *english)
{
    return text(english);
}

QString verdictText(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Usable:
        return text("qelworkbench-usable");
    case Verdict::UsableWithWarnings:
        return text("qelworkbench-usable-with-warnings");
    case Verdict::NotUsable:
        break;
    }
    return text("qelworkbench-not-usable");
}

QVector<FolderReport> inspectAll(const QStringList &folders)
{
    QVector<FolderReport> reports;
    for (const QString &folder : folders)
        reports.append(inspectFolder(folder));
    return reports;
}

} // namespace

DriverInspection::DriverInspection(QStringList folders, QObject *parent)
    : QObject(parent)
    , m_folders(std::move(folders))
{ }

DriverInspection::~DriverInspection()
{
    if (m_trial)
        m_trial->wait();
}

void DriverInspection::inspect()
{
    m_reports = inspectAll(pluginFolders() + m_folders);
    Q_EMIT changed();
}

// In a thread, since a driver may take its time.
void DriverInspection::tryLoading()
{
    if (isTrying())
        return;
    auto reports = std::make_shared<QVector<FolderReport>>();
    m_trial.reset(QThread::create([reports, folders = pluginFolders() + m_folders,
                                   program = QCoreApplication::applicationFilePath()] {
        *reports = inspectAll(folders);
        qel::inspection::tryLoading(reports.get(), program, {QString::fromLatin1(trialArgument)});
    }));
    connect(m_trial.get(), &QThread::finished, this, [this, reports] {
        m_reports = *reports;
        m_trial.release()->deleteLater();
        Q_EMIT changed();
    });
    m_trial->start();
    Q_EMIT changed();
}

bool DriverInspection::isTrying() const
{
    return m_trial != nullptr;
}

QStringList DriverInspection::lines() const
{
    if (m_reports.isEmpty())
        return {};
    QStringList lines;
    for (const FolderReport &folder : m_reports) {
        lines.append(folder.exists && !folder.files.isEmpty()
                         ? folder.path
                         : text("qelworkbench-no-drivers-in", folder.path));
        for (const FileReport &file : folder.files) {
            QString line =
                QStringLiteral("  %1: %2")
                    .arg(file.path.mid(folder.path.size() + 1), verdictText(file.verdict()));
            if (!file.drivers.isEmpty())
                line += QStringLiteral(" (%1)").arg(file.drivers.join(QStringLiteral(", ")));
            lines.append(line);
            for (const FileFinding &finding : file.findings) {
                lines.append(QStringLiteral("      ") + finding.text.in(translated));
                lines.append(QStringLiteral("      → ") + finding.remedy.in(translated));
            }
        }
    }
    lines.append(text("qelworkbench-drivers-loaded",
                      qel::devices::DeviceBroker::availableDrivers().join(QStringLiteral(", "))));
    return lines;
}

bool isLoadTrial(int argc, char *const *argv)
{
    return argc == 2 && qstrcmp(argv[1], trialArgument) == 0;
}

int runLoadTrial(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    return serveLoadTrial();
}

} // namespace qelworkbench
