#include "history.h"

#include "text.h"

#include <QtCore/QMetaEnum>

#include <algorithm>

namespace qelworkbench {

using qel::devices::Device;

History::History(Store *store, QObject *parent)
    : QAbstractTableModel(parent)
    , m_store(store)
{ }

void History::load()
{
    beginResetModel();
    m_rows.clear();
    m_rowOfSeries.clear();
    const QVector<Entry> entries = m_store->entries();
    for (auto entry = entries.rbegin(); entry != entries.rend(); ++entry)
        append(*entry, false);
    endResetModel();
}

// Rows are stored the oldest first, so that the latest is appended, and shown the other way round.
void History::append(const Entry &entry, bool isLatest)
{
    const int known = entry.series.isEmpty() ? -1 : m_rowOfSeries.value(entry.series, -1);
    if (known >= 0) {
        m_rows[known].append(entry);
        if (isLatest)
            Q_EMIT dataChanged(index(m_rows.size() - 1 - known, 0),
                               index(m_rows.size() - 1 - known, ColumnCount - 1));
        return;
    }
    if (isLatest)
        beginInsertRows(QModelIndex(), 0, 0);
    if (!entry.series.isEmpty())
        m_rowOfSeries.insert(entry.series, m_rows.size());
    m_rows.append({entry});
    if (isLatest)
        endInsertRows();
}

void History::add(const QString &file)
{
    QString problem;
    const auto entry = m_store->entry(file, &problem);
    if (entry)
        append(*entry, true);
    else
        Q_EMIT failed(problem);
}

const QVector<Entry> &History::runs(int row) const
{
    return m_rows[m_rows.size() - 1 - row];
}

QVector<Result> History::read(int row, QString *problem) const
{
    QVector<Result> results;
    for (const Entry &entry : runs(row)) {
        if (const auto result = m_store->read(entry, problem))
            results.append(*result);
    }
    return results;
}

void History::setLayout(const QString &file, const QJsonObject &layout)
{
    QString problem;
    if (!m_store->setLayout(file, layout, &problem)) {
        Q_EMIT failed(problem);
        return;
    }
    for (QVector<Entry> &row : m_rows) {
        for (Entry &entry : row) {
            if (entry.file == file)
                entry.layout = layout;
        }
    }
}

int History::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_rows.size();
}

int History::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

static QString measurementText(const QVector<Entry> &runs)
{
    const Entry &first = runs.constFirst();
    bool isKnown = false;
    const int feature = QMetaEnum::fromType<Device::DeviceFeature>().keyToValue(
        first.feature.toUtf8().constData(), &isKnown);
    const QString title = isKnown ? featureTitle(Device::DeviceFeature(feature)) : first.feature;
    return first.series.isEmpty()
        ? title
        : text("qelworkbench-series-of", title, QString::number(runs.size()));
}

QVariant History::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::EditRole))
        return {};
    const Entry &first = runs(index.row()).constFirst();
    switch (index.column()) {
    case Time:
        if (role == Qt::EditRole)
            return first.startedAt.toLocalTime();
        return QLocale().toString(first.startedAt.toLocalTime(), text("qelworkbench-time-format"));
    case Name:
        return first.name;
    case Measurement:
        return measurementText(runs(index.row()));
    case Instrument:
        return QStringLiteral("%1 %2").arg(first.instrument, first.serial).trimmed();
    case Note:
        return first.note;
    }
    return {};
}

bool History::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    Entry &first = m_rows[m_rows.size() - 1 - index.row()].first();
    Entry edited = first;
    (index.column() == Name ? edited.name : edited.note) = value.toString().trimmed();
    QString problem;
    if (!m_store->annotate(edited.file, edited.name, edited.note, &problem)) {
        Q_EMIT failed(problem);
        return false;
    }
    first = edited;
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant History::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    const char *titles[] = {"qelworkbench-column-time", "qelworkbench-column-name",
                            "qelworkbench-column-measurement", "qelworkbench-column-instrument",
                            "qelworkbench-column-note"};
    return text(titles[section]);
}

Qt::ItemFlags History::flags(const QModelIndex &index) const
{
    Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    if (index.column() == Name || index.column() == Note)
        flags |= Qt::ItemIsEditable;
    return flags;
}

void HistoryFilter::setWords(const QString &words)
{
    m_words = words.simplified().split(QLatin1Char(' '), Qt::SkipEmptyParts);
    invalidateFilter();
}

void HistoryFilter::setDays(const QDate &first, const QDate &last)
{
    m_first = first;
    m_last = last;
    invalidateFilter();
}

bool HistoryFilter::filterAcceptsRow(int row, const QModelIndex &parent) const
{
    const auto cell = [&](int column) { return sourceModel()->index(row, column, parent); };
    if (m_first.isValid() || m_last.isValid()) {
        const QDate day = cell(History::Time).data(Qt::EditRole).toDate();
        if ((m_first.isValid() && day < m_first) || (m_last.isValid() && day > m_last))
            return false;
    }
    if (m_words.isEmpty())
        return true;
    QString all;
    for (int column = 0; column < History::ColumnCount; ++column)
        all += cell(column).data().toString() + QLatin1Char('\n');
    return std::all_of(m_words.begin(), m_words.end(), [&all](const QString &word) {
        return all.contains(word, Qt::CaseInsensitive);
    });
}

} // namespace qelworkbench
