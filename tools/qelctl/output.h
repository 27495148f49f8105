#ifndef QELCTL_OUTPUT_H
#define QELCTL_OUTPUT_H

#include <QtCore/QByteArray>
#include <QtCore/QFile>
#include <QtCore/QSaveFile>
#include <QtCore/QString>

#include <memory>

namespace qelctl {

/// Where data goes: standard output or a file.
class Output
{
public:
    /// Opens standard output (an empty `path`) or the file at `path`. An existing file is replaced
    /// only with `force`, and only when commit() is reached: until then the data goes to a file
    /// beside it. What is no regular file, such as a pipe, is written to directly.
    /// @return null, and a sentence in `problem`, when it cannot be opened
    static std::unique_ptr<Output> open(const QString &path, bool force, QString *problem);

    /// Whether data goes to a terminal.
    bool isTerminal() const;

    /// Writes `data`; false, and a sentence in `problem`, when it does not get there.
    bool write(const QByteArray &data, QString *problem);
    /// Makes sure that everything written is there, and puts the file in its place.
    bool commit(QString *problem);

private:
    Output() = default;
    QString describe(const QString &reason) const;

    QString m_path;
    std::unique_ptr<QFileDevice> m_file;
};

/// Writes `data` to standard output.
/// @return Done, or CannotWrite with a complaint printed
int printData(const QByteArray &data);

/// Whether standard output shows colours: as the user says, else when it is a terminal that can.
bool showsColor();

/// How many columns the terminal behind `fileDescriptor` has; 80 where it is none.
int terminalWidth(int fileDescriptor);

/// Shows on standard error, if that is a terminal, how far a run is: a bar, the percentage and the
/// time it will probably still take. `elapsed` and the time left are in milliseconds.
void showProgress(double progress, qint64 elapsed);
/// Removes the progress bar, so that a line can be printed in its place.
void clearProgress();

} // namespace qelctl

#endif
