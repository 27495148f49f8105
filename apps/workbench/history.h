#ifndef QELWORKBENCH_HISTORY_H
#define QELWORKBENCH_HISTORY_H

#include "store.h"

#include <QtCore/QAbstractTableModel>
#include <QtCore/QSortFilterProxyModel>

namespace qelworkbench {

/// The runs of a store, the latest first; the runs of a series share a row. Names and notes can be
/// edited in their cells.
class History : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Time, Name, Measurement, Instrument, Note, ColumnCount };

    explicit History(Store *store, QObject *parent = nullptr);

    /// Reads the folder anew.
    void load();
    /// Takes up a run that was just kept.
    void add(const QString &file);

    /// The runs of a row, in the order of measurement.
    const QVector<Entry> &runs(int row) const;
    /// Reads the runs of a row. What cannot be read is left out and said in `problem`.
    QVector<Result> read(int row, QString *problem) const;

    /// Says what the wells of a run hold.
    void setLayout(const QString &file, const QJsonObject &layout);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

Q_SIGNALS:
    /// A name or note could not be kept.
    void failed(const QString &problem);

private:
    void append(const Entry &entry, bool isLatest);

    Store *m_store;
    QVector<QVector<Entry>> m_rows;
    QHash<QString, int> m_rowOfSeries; // counted from the oldest row, so that it stays
};

/// The rows of a history that hold all words of a text, in a span of days.
class HistoryFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    using QSortFilterProxyModel::QSortFilterProxyModel;

    void setWords(const QString &words);
    /// Invalid dates set no limit.
    void setDays(const QDate &first, const QDate &last);

protected:
    bool filterAcceptsRow(int row, const QModelIndex &parent) const override;

private:
    QStringList m_words;
    QDate m_first;
    QDate m_last;
};

} // namespace qelworkbench

#endif
