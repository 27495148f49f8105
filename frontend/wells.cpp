#include "wells.h"

#include "messages_p.h"

#include <QtCore/QStringList>

#include <algorithm>

namespace qel::frontend {

namespace {

struct Well
{
    int row = 0;
    int column = 0;
};

std::optional<Well> readWell(const QString &name, int rows, int columns)
{
    Well well;
    int position = 0;
    int row = 0;
    while (position < name.size() && name[position] >= u'A' && name[position] <= u'Z'
           && row <= rows) {
        row = row * 26 + name[position].unicode() - u'A' + 1;
        ++position;
    }
    bool isNumber = false;
    const int column = name.midRef(position).toInt(&isNumber);
    if (position == 0 || row > rows || !isNumber || !name[position].isDigit() || column < 1
        || column > columns)
        return {};
    well.row = row - 1;
    well.column = column - 1;
    return well;
}

} // namespace

QString rowName(int row)
{
    QString name;
    for (int rest = row + 1; rest > 0; rest = (rest - 1) / 26)
        name.prepend(QChar(u'A' + (rest - 1) % 26));
    return name;
}

QString wellName(int row, int column)
{
    return rowName(row) + QString::number(column + 1);
}

std::optional<QVector<bool>> readWells(const QString &text, int rows, int columns, QString *problem)
{
    QVector<bool> wells(rows * columns, false);
    const QStringList ranges = text.toUpper().remove(u' ').split(u',');
    for (const QString &range : ranges) {
        const QStringList names = range.split(u':');
        const auto first = readWell(names.first(), rows, columns);
        const auto last = readWell(names.last(), rows, columns);
        if (!first || !last || names.size() > 2) {
            *problem = message("qelfrontend-wells-unknown", excerpt(range),
                               wellName(rows - 1, columns - 1));
            return {};
        }
        const auto [top, bottom] = std::minmax(first->row, last->row);
        const auto [left, right] = std::minmax(first->column, last->column);
        for (int row = top; row <= bottom; ++row)
            std::fill(wells.begin() + row * columns + left,
                      wells.begin() + row * columns + right + 1, true);
    }
    return wells;
}

QString writeWells(const QVector<bool> &wells, int columns)
{
    QStringList ranges;
    for (int first = 0; first < wells.size(); ++first) {
        if (!wells[first])
            continue;
        const int row = first / columns;
        const int rowEnd = std::min((row + 1) * columns, wells.size());
        int last = first;
        while (last + 1 < rowEnd && wells[last + 1])
            ++last;
        ranges += wellName(row, first % columns);
        if (last > first)
            ranges.last() += u':' + wellName(row, last % columns);
        first = last;
    }
    return ranges.join(u',');
}

} // namespace qel::frontend
