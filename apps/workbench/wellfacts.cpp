#include "wellfacts.h"

#include "plateview.h"
#include "statistics.h"
#include "text.h"

#include <QtCore/QEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QVBoxLayout>

namespace qelworkbench {

WellFacts::WellFacts(PlateView *plate, QWidget *parent)
    : QWidget(parent)
    , m_plate(plate)
    , m_well(new QLabel(this))
    , m_statistics(new QLabel(this))
    , m_legend(new QLabel(this))
{
    m_well->setObjectName(QStringLiteral("well"));
    m_well->setWordWrap(true);
    m_statistics->setObjectName(QStringLiteral("statistics"));
    m_statistics->setWordWrap(true);
    auto *line = new QHBoxLayout;
    line->addWidget(m_well, 1);
    line->addWidget(m_legend);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addLayout(line);
    layout->addWidget(m_statistics);
    connect(plate, &PlateView::currentChanged, this, &WellFacts::showWell);
    connect(plate, &PlateView::selectionChanged, this, &WellFacts::showStatistics);
    connect(plate, &PlateView::pictureChanged, this, &WellFacts::showStatistics);
    showWell();
    showStatistics();
}

void WellFacts::showWell()
{
    const QString well = m_plate->wellText(m_plate->currentWell());
    m_well->setText(well.isEmpty() ? text("qelworkbench-well-hint") : well);
}

void WellFacts::showStatistics()
{
    const PlatePicture &picture = m_plate->picture();
    const QVector<bool> &selection = m_plate->selection();
    const Statistics numbers = statisticsOf(picture.values, selection, picture.maximum);
    QStringList parts{text(selection.contains(true) ? "qelworkbench-statistics-selected"
                                                    : "qelworkbench-statistics-all",
                           QString::number(numbers.count))};
    // With saturated wells the mean is only a limit, and the deviation means nothing. What lies
    // between two plates has no such limit, and a variation relative to it means nothing.
    const bool isLimit = numbers.saturated > 0 && !picture.isDifference;
    if (numbers.count > 0)
        parts.append(text("qelworkbench-statistics-mean",
                          (isLimit ? QStringLiteral("≥ ") : QString()) + valueText(numbers.mean),
                          picture.unit));
    if (numbers.deviation && !isLimit)
        parts.append(
            text("qelworkbench-statistics-deviation", valueText(*numbers.deviation), picture.unit));
    if (numbers.variation && !isLimit && !picture.isDifference)
        parts.append(text("qelworkbench-statistics-variation",
                          QLocale().toString(*numbers.variation * 100, 'f', 1)));
    m_statistics->setText(parts.join(QStringLiteral("   ")));
    QStringList marks;
    if (numbers.saturated > 0)
        marks.append(text("qelworkbench-legend-saturated", QString::number(numbers.saturated)));
    if (numbers.notMeasured > 0)
        marks.append(
            text("qelworkbench-legend-not-measured", QString::number(numbers.notMeasured)));
    m_legend->setText(marks.join(QStringLiteral("   ")));
}

void WellFacts::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange) {
        showWell();
        showStatistics();
    }
    QWidget::changeEvent(event);
}

} // namespace qelworkbench
