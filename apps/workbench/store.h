#ifndef QELWORKBENCH_STORE_H
#define QELWORKBENCH_STORE_H

#include <qelfrontend/plate.h>
#include <qelfrontend/runjson.h>

#include <QtCore/QDateTime>
#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <QtCore/QVector>

#include <optional>

namespace qelworkbench {

/// What the history says of a run without opening it.
struct Entry
{
    QString file;        ///< name within the folder
    QDateTime startedAt; ///< in UTC
    QString instrument;
    QString serial;
    QString feature; ///< the enumerator, for instance "DF_Orientation"
    QString series;  ///< the same for all runs of a series; empty for a single run
    int number = 1;  ///< place in the series, from 1
    QString name;    ///< given by the operator
    QString note;
    QJsonObject layout; ///< as PlateLayout::toJson() writes it; of a series with its first run
};

/// A run that was read back.
struct Result
{
    Entry entry;
    qel::frontend::RunDocument run;
};

/// Where a run stands in its series.
struct SeriesMark
{
    QString id; ///< empty for a single run
    int number = 1;
    int count = 1;
};

/// The folder in which every finished run stands, one document a file.
///
/// A document is written whole or not at all and never touched again: it is what
/// `qelctl run --format json` prints. A run without a result whose instrument delivered something
/// all the same has a document, too, which the history leaves out. Names and notes stand in a file
/// of their own beside them; a cache, which may be deleted at any time, spares reading all
/// documents at each start.
class Store
{
public:
    explicit Store(QString folder);

    QString folder() const;

    /// Writes a run's document.
    /// @return the file's name; nothing, and a sentence in `problem`, when it could not be written
    std::optional<QString> keep(const qel::frontend::RunRecord &record, const SeriesMark &mark,
                                QString *problem);

    /// All runs, the latest first. Files that are no run are left out.
    QVector<Entry> entries() const;

    /// What the history says of one file.
    std::optional<Entry> entry(const QString &file, QString *problem) const;

    /// Reads a run.
    std::optional<Result> read(const Entry &entry, QString *problem) const;

    /// Gives a run a name and a note. False, and a sentence in `problem`, when that cannot be kept.
    bool annotate(const QString &file, const QString &name, const QString &note, QString *problem);
    /// Says what the wells of a run hold. False likewise.
    bool setLayout(const QString &file, const QJsonObject &layout, QString *problem);

private:
    QString path(const QString &file) const;
    QJsonObject annotations() const;
    bool writeNotes(const QString &file, const QJsonObject &changed, QString *problem);

    QString m_folder;
};

} // namespace qelworkbench

#endif
