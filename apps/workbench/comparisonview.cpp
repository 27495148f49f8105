#include "comparisonview.h"

#include "plateview.h"
#include "resultpictures.h"
#include "text.h"
#include "wellfacts.h"

#include <QtCore/QEvent>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>

#include <algorithm>

namespace qelworkbench {

namespace {

// A is the first plate, B the second.
QString titleOf(const Result &result, QChar letter)
{
    QStringList facts{
        result.entry.name.isEmpty() ? featureTitle(result.run.record.feature) : result.entry.name,
        result.run.record.device.serial(),
        QLocale().toString(result.entry.startedAt.toLocalTime(), text("qelworkbench-time-format"))};
    if (!result.entry.series.isEmpty())
        facts.append(text("qelworkbench-compare-run", QString::number(result.entry.number)));
    facts.removeAll(QString());
    return QStringLiteral("%1: %2").arg(letter, facts.join(QStringLiteral("  ·  ")));
}

PlatePicture pictureOf(const Result &result, const QString &read)
{
    const auto &plate = *result.run.plate;
    const auto found = std::find_if(plate.reads.begin(), plate.reads.end(),
                                    [&read](const auto &one) { return one.label == read; });
    return pictureOf(result, int(std::distance(plate.reads.begin(), found)),
                     PlateLayout::fromJson(result.entry.layout, plate.rows, plate.columns));
}

} // namespace

ComparisonView::ComparisonView(QWidget *parent)
    : QWidget(parent)
    , m_pages(new QStackedWidget(this))
    , m_problem(new QLabel(this))
    , m_readLabel(new QLabel(this))
    , m_read(new QComboBox(this))
    , m_tabs(new QTabWidget(this))
    , m_one(new PlateView(this))
    , m_oneTitle(new QLabel(this))
    , m_other(new PlateView(this))
    , m_otherTitle(new QLabel(this))
    , m_difference(new PlateView(this))
    , m_differenceTitle(new QLabel(this))
{
    m_problem->setObjectName(QStringLiteral("comparisonProblem"));
    m_problem->setAlignment(Qt::AlignCenter);
    m_problem->setWordWrap(true);
    m_one->setObjectName(QStringLiteral("plateA"));
    m_other->setObjectName(QStringLiteral("plateB"));
    m_difference->setObjectName(QStringLiteral("plateDifference"));
    m_differenceTitle->setObjectName(QStringLiteral("differenceTitle"));
    m_tabs->setObjectName(QStringLiteral("comparison"));
    m_tabs->setDocumentMode(true);
    m_readLabel->setBuddy(m_read);
    auto *both = new QSplitter(Qt::Horizontal, this);
    both->setChildrenCollapsible(false);
    both->setHandleWidth(12);
    both->addWidget(makePlate(m_one, m_oneTitle));
    both->addWidget(makePlate(m_other, m_otherTitle));
    m_tabs->addTab(both, QString());
    m_tabs->addTab(makePlate(m_difference, m_differenceTitle), QString());
    keepTogether(m_one, m_other);
    keepTogether(m_other, m_one);

    auto *shown = new QWidget(this);
    auto *head = new QHBoxLayout;
    head->addWidget(m_readLabel);
    head->addWidget(m_read);
    head->addStretch();
    auto *layout = new QVBoxLayout(shown);
    layout->setContentsMargins({});
    layout->addLayout(head);
    layout->addWidget(m_tabs, 1);
    m_pages->addWidget(m_problem);
    m_pages->addWidget(shown);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(m_pages);
    connect(m_read, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ComparisonView::showRead);
    retranslate();
}

QWidget *ComparisonView::makePlate(PlateView *plate, QLabel *title)
{
    title->setTextFormat(Qt::PlainText);
    title->setWordWrap(true);
    auto *column = new QWidget(this);
    auto *layout = new QVBoxLayout(column);
    layout->setContentsMargins({});
    layout->addWidget(title);
    layout->addWidget(plate, 1);
    layout->addWidget(new WellFacts(plate, column));
    return column;
}

// What is looked at or selected on one plate is looked at or selected on the other.
void ComparisonView::keepTogether(PlateView *leader, PlateView *follower)
{
    connect(leader, &PlateView::selectionChanged, follower,
            [leader, follower] { follower->setSelection(leader->selection()); });
    connect(leader, &PlateView::currentChanged, follower, [leader, follower] {
        if (follower->currentWell() != leader->currentWell() && !follower->underMouse())
            follower->setCurrentWell(leader->currentWell());
    });
}

void ComparisonView::setResults(const Result &one, const Result &other)
{
    m_results = {one, other};
    const QString before = m_read->currentText();
    const QSignalBlocker blocker(m_read);
    m_read->clear();
    m_read->addItems(commonReads(one, other));
    m_read->setCurrentIndex(std::max(0, m_read->findText(before)));
    m_read->setVisible(m_read->count() > 1);
    m_readLabel->setVisible(m_read->count() > 1);
    showRead();
}

void ComparisonView::showRead()
{
    m_pages->setCurrentIndex(m_read->count() > 0 ? 1 : 0);
    m_problem->setText(text("qelworkbench-compare-nothing"));
    if (m_results.isEmpty() || m_read->count() == 0)
        return;
    PlatePicture one = pictureOf(m_results[0], m_read->currentText());
    PlatePicture other = pictureOf(m_results[1], m_read->currentText());
    QString problem;
    const auto between = difference(one, other, &problem);
    shareColors(&one, &other);
    m_one->setPicture(one);
    m_other->setPicture(other);
    m_difference->setPicture(between.value_or(PlatePicture()));
    m_oneTitle->setText(titleOf(m_results[0], QLatin1Char('A')));
    m_otherTitle->setText(titleOf(m_results[1], QLatin1Char('B')));
    m_differenceTitle->setText(
        between ? text("qelworkbench-compare-difference", m_oneTitle->text(), m_otherTitle->text())
                : problem);
}

void ComparisonView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ComparisonView::retranslate()
{
    m_readLabel->setText(text("qelworkbench-read"));
    m_read->setAccessibleName(text("qelworkbench-read"));
    m_tabs->setTabText(0, text("qelworkbench-tab-side-by-side"));
    m_tabs->setTabText(1, text("qelworkbench-tab-difference"));
    m_one->setAccessibleName(text("qelworkbench-compare-plate", QStringLiteral("A")));
    m_other->setAccessibleName(text("qelworkbench-compare-plate", QStringLiteral("B")));
    m_difference->setAccessibleName(text("qelworkbench-tab-difference"));
    showRead();
}

} // namespace qelworkbench
