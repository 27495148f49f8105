#ifndef QELWORKBENCH_DRIVERINSPECTION_H
#define QELWORKBENCH_DRIVERINSPECTION_H

#include <qelinspection/inspection.h>

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <memory>

class QThread;

namespace qelworkbench {

/// The driver plugins on this computer: what their files tell, and on demand what happens when they
/// are loaded.
class DriverInspection : public QObject
{
    Q_OBJECT

public:
    /// @param folders searched for drivers in addition to the library's own
    explicit DriverInspection(QStringList folders, QObject *parent = nullptr);
    /// Waits for the end of a trial.
    ~DriverInspection() override;

    /// Looks at the files. Nothing of them is loaded.
    void inspect();
    /// Looks at the files, loads them in a process of their own and asks their drivers for the
    /// instruments that they reach; changed() is emitted at the end. The process is this program;
    /// its main() begins with isLoadTrial().
    void tryLoading();
    bool isTrying() const;

    /// What is known, for people, in the present language; empty before the first inspection.
    QStringList lines() const;

Q_SIGNALS:
    void changed();

private:
    const QStringList m_folders;
    QVector<qel::inspection::FolderReport> m_reports;
    std::unique_ptr<QThread> m_trial;
};

/// Whether the program was started by DriverInspection to load drivers.
bool isLoadTrial(int argc, char *const *argv);
/// Does so, and returns the exit code.
int runLoadTrial(int argc, char **argv);

} // namespace qelworkbench

#endif
