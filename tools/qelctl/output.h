#ifndef QELCTL_OUTPUT_H
#define QELCTL_OUTPUT_H

#include <qelfrontend/resultfile.h>

#include <QtCore/QByteArray>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <memory>

namespace qelctl {

/// Takes the standard output for data alone: from now on whatever else is written to it, by a
/// driver for instance, goes to standard error. Standard streams that are closed lead nowhere, so
/// that no file gets their numbers. To be called first of all.
void takeStandardOutput();
/// The descriptor of what was the standard output.
int dataDescriptor();

/// Where data goes: standard output or a file.
class Output
{
public:
    using Existing = qel::frontend::ResultFile::Existing;

    /// Opens standard output (`path` is empty or "-") or prepares the file at `path`.
    /// @return null, and a sentence in `problem`, when it cannot be opened
    static std::unique_ptr<Output> open(const QString &path, Existing existing, QString *problem);

    /// Whether data goes to a terminal.
    bool isTerminal() const;
    /// Whether data goes to a file, which keeps it.
    bool isFile() const;
    /// The file as the user wrote it.
    QString path() const;

    /// Writes `data`, whole or not at all where it goes to a file, and safe when this returns.
    /// False, and a sentence in `problem`, when it does not get there.
    bool write(const QByteArray &data, QString *problem);

private:
    Output() = default;

    QString m_path;
    std::unique_ptr<qel::frontend::ResultFile> m_file; // null for standard output
};

/// Writes `data` to standard output.
/// @return Done, or CannotWrite with a complaint printed
int printData(const QByteArray &data);

/// Tells when nobody reads the standard output any more, also while nothing is printed: a command
/// that prints only now and then would not notice otherwise.
class ReaderWatch : public QObject
{
    Q_OBJECT

public:
    ReaderWatch();

signals:
    void gone();

private:
    QTimer m_timer;
};

/// Whether text is coloured: as the user says, else when it goes to a terminal that can show it.
bool usesColor(bool toTerminal);

/// How many columns the terminal behind `fileDescriptor` has; 80 where it is none.
int terminalWidth(int fileDescriptor);

} // namespace qelctl

#endif
