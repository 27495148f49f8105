#ifndef QELCTL_OUTPUT_H
#define QELCTL_OUTPUT_H

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QObject>
#include <QtCore/QString>
#include <QtCore/QTimer>

#include <memory>

namespace qelctl {

/// Where data goes: standard output or a file.
class Output
{
public:
    /// Opens standard output (an empty `path`) or the file at `path`. An existing file is replaced
    /// only with `force`, and only when commit() is reached: until then the data goes to a file
    /// beside it, which is removed without commit(). What is no regular file, such as a pipe, is
    /// written to directly.
    /// @return null, and a sentence in `problem`, when it cannot be opened
    static std::unique_ptr<Output> open(const QString &path, bool force, QString *problem);
    ~Output();

    /// Whether data goes to a terminal.
    bool isTerminal() const;

    /// Writes `data`; false, and a sentence in `problem`, when it does not get there.
    bool write(const QByteArray &data, QString *problem);
    /// Makes sure that everything written is there, and puts the file in its place.
    bool commit(QString *problem);

private:
    Output() = default;
    QString openBeside(bool force);
    QString describe(const QString &reason) const;

    QString m_path;          // as the user wrote it; empty for standard output
    QByteArray m_place;      // where commit() puts the file; empty where there is nothing to put
    bool m_replaces = false; // what is at m_place
    std::unique_ptr<QFile> m_file;
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
