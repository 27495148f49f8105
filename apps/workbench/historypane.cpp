#include "historypane.h"

#include "comparisonview.h"
#include "resultview.h"
#include "text.h"

#include <QtCore/QEvent>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTableView>

#include <algorithm>

namespace qelworkbench {

namespace {

// How many days back a choice reaches, from today; -1: without a limit.
struct Span
{
    const char *title;
    int first;
    int last;
};

constexpr Span spans[] = {
    {"qelworkbench-days-all", -1, -1},     {"qelworkbench-days-today", 0, 0},
    {"qelworkbench-days-yesterday", 1, 1}, {"qelworkbench-days-week", 6, 0},
    {"qelworkbench-days-month", 30, 0},
};

} // namespace

HistoryPane::HistoryPane(History *history, QWidget *parent)
    : QWidget(parent)
    , m_history(history)
    , m_filter(new HistoryFilter(this))
    , m_search(new QLineEdit(this))
    , m_days(new QComboBox(this))
    , m_count(new QLabel(this))
    , m_folder(new QPushButton(this))
    , m_table(new QTableView(this))
    , m_pages(new QStackedWidget(this))
    , m_result(new ResultView(this))
    , m_comparison(new ComparisonView(this))
{
    m_filter->setSourceModel(history);
    m_search->setObjectName(QStringLiteral("search"));
    m_search->setClearButtonEnabled(true);
    m_days->setObjectName(QStringLiteral("days"));
    for (const Span &span : spans)
        m_days->addItem(text(span.title));
    m_table->setObjectName(QStringLiteral("history"));
    m_table->setModel(m_filter);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setSelectionMode(QAbstractItemView::ExtendedSelection);
    m_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    m_table->setShowGrid(false);
    m_table->setAlternatingRowColors(true);
    m_table->setWordWrap(false);
    m_table->setMinimumHeight(60);
    m_table->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    m_table->setTabKeyNavigation(false);
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_table->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 10);
    m_table->horizontalHeader()->setStretchLastSection(true);
    m_table->horizontalHeader()->setHighlightSections(false);
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    m_table->setColumnWidth(History::Time, 17 * digit);
    m_table->setColumnWidth(History::Name, 15 * digit);
    m_table->setColumnWidth(History::Measurement, 18 * digit);
    m_table->setColumnWidth(History::Instrument, 20 * digit);

    auto *head = new QHBoxLayout;
    head->addWidget(m_search, 1);
    head->addWidget(m_days);
    head->addWidget(m_count);
    head->addSpacing(12);
    head->addWidget(m_folder);
    auto *splitter = new QSplitter(Qt::Vertical, this);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(12);
    splitter->addWidget(m_table);
    m_pages->addWidget(m_result);
    m_pages->addWidget(m_comparison);
    splitter->addWidget(m_pages);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({180, 500});
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(head);
    layout->addWidget(splitter, 1);

    connect(m_search, &QLineEdit::textChanged, m_filter, &HistoryFilter::setWords);
    connect(m_days, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &HistoryPane::showDays);
    connect(m_folder, &QPushButton::clicked, this, &HistoryPane::folderWanted);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &HistoryPane::open);
    for (auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(m_filter, signal, this, &HistoryPane::showCount);
    connect(m_filter, &QAbstractItemModel::modelReset, this, &HistoryPane::showCount);
    connect(m_history, &History::failed, this,
            [this](const QString &problem) { Q_EMIT said(sentence(problem), true); });
    connect(m_result, &ResultView::said, this, &HistoryPane::said);
    retranslate();
}

ResultView *HistoryPane::resultView() const
{
    return m_result;
}

void HistoryPane::focusSearch()
{
    m_search->setFocus();
    m_search->selectAll();
}

void HistoryPane::retranslate()
{
    m_search->setPlaceholderText(text("qelworkbench-search"));
    m_search->setAccessibleName(text("qelworkbench-search"));
    m_days->setAccessibleName(text("qelworkbench-days"));
    m_table->setAccessibleName(text("qelworkbench-tab-history"));
    m_folder->setText(text("qelworkbench-folder"));
    for (int i = 0; i < m_days->count(); ++i)
        m_days->setItemText(i, text(spans[i].title));
    if (m_result->results().isEmpty())
        m_result->clear(text("qelworkbench-history-hint"));
    m_table->viewport()->update();
    m_table->horizontalHeader()->viewport()->update();
    showCount();
}

void HistoryPane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void HistoryPane::showDays()
{
    const Span &span = spans[std::max(0, m_days->currentIndex())];
    const QDate today = QDate::currentDate();
    if (span.first < 0)
        m_filter->setDays(QDate(), QDate());
    else
        m_filter->setDays(today.addDays(-span.first), today.addDays(-span.last));
}

void HistoryPane::showCount()
{
    m_count->setText(text("qelworkbench-run-count", QLocale().toString(m_filter->rowCount())));
}

void HistoryPane::open()
{
    QVector<int> rows;
    const auto selected = m_table->selectionModel()->selectedRows();
    for (const QModelIndex &index : selected)
        rows.append(m_filter->mapToSource(index).row());
    std::sort(rows.begin(), rows.end());
    if (rows.size() == 2) {
        compare(rows[1], rows[0]); // the latest stands first
        return;
    }
    if (rows.size() != 1) {
        showHint(text("qelworkbench-history-hint"));
        return;
    }
    QString problem;
    const auto results = m_history->read(rows[0], &problem);
    m_pages->setCurrentWidget(m_result);
    m_result->setResults(results);
    if (!problem.isEmpty())
        Q_EMIT said(sentence(problem), true);
    if (results.isEmpty())
        showHint(sentence(problem));
}

// The last runs of both, where they are series.
void HistoryPane::compare(int row, int otherRow)
{
    QString problem;
    const auto one = m_history->read(row, &problem);
    const auto other = m_history->read(otherRow, &problem);
    if (one.isEmpty() || other.isEmpty()) {
        showHint(sentence(problem));
        return;
    }
    m_comparison->setResults(one.constLast(), other.constLast());
    m_pages->setCurrentWidget(m_comparison);
}

void HistoryPane::showHint(const QString &hint)
{
    m_result->clear(hint);
    m_pages->setCurrentWidget(m_result);
}

} // namespace qelworkbench
