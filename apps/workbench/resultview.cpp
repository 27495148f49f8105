#include "resultview.h"

#include "curves.h"
#include "exportmenu.h"
#include "layoutmenu.h"
#include "plaintext.h"
#include "plateview.h"
#include "resultpictures.h"
#include "text.h"
#include "wellfacts.h"

#include <qelfrontend/wells.h>

#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtGui/QClipboard>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableWidget>

#include <algorithm>

namespace qelworkbench {

ResultView::ResultView(QWidget *parent)
    : QWidget(parent)
    , m_blank(new QCheckBox(this))
    , m_brushButton(new QPushButton(this))
    , m_layoutButton(new QPushButton(this))
    , m_layoutMenu(new LayoutMenu(this))
    , m_exportMenu(new ExportMenu(this))
    , m_pages(new QStackedWidget(this))
    , m_plain(new QLabel(this))
    , m_tabs(new QTabWidget(this))
    , m_plate(new PlateView(this))
    , m_table(new QTableWidget(this))
    , m_curves(new Curves(this))
    , m_facts(new WellFacts(m_plate, this))
{
    setObjectName(QStringLiteral("result"));
    m_plate->setObjectName(QStringLiteral("plate"));
    m_plain->setAlignment(Qt::AlignCenter);
    m_plain->setWordWrap(true);
    m_plain->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_tabs->addTab(m_plate, QString());
    m_tabs->addTab(m_table, QString());
    m_tabs->addTab(m_curves, QString());
    m_tabs->setDocumentMode(true);

    auto *shown = new QWidget(this);
    auto *layout = new QVBoxLayout(shown);
    layout->setContentsMargins({});
    layout->addWidget(makeHeader());
    layout->addWidget(m_tabs, 1);
    layout->addWidget(m_facts);
    m_pages->addWidget(m_plain);
    m_pages->addWidget(shown);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(m_pages);

    connectAll();
    clear();
    retranslate();
}

void ResultView::connectAll()
{
    connect(m_read, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ResultView::showRun);
    connect(m_run, &QSlider::valueChanged, this, &ResultView::showRun);
    connect(m_blank, &QCheckBox::toggled, this, &ResultView::showRun);
    connect(m_copy, &QPushButton::clicked, this, &ResultView::copy);
    connect(m_plate, &PlateView::selectionChanged, this, &ResultView::showCurves);
    connect(m_plate, &PlateView::picked, this, &ResultView::paintContent);
    connect(m_brushButton, &QPushButton::clicked, this, &ResultView::stopPainting);
    connect(m_layoutMenu, &LayoutMenu::contentChosen, this, &ResultView::setContent);
    connect(m_layoutMenu, &LayoutMenu::layoutChosen, this, &ResultView::setLayoutOfWells);
    connect(m_layoutMenu, &LayoutMenu::failed, this,
            [this](const QString &problem) { Q_EMIT said(problem, true); });
    connect(m_exportMenu, &ExportMenu::wanted, this, &ResultView::exportAs);
}

QWidget *ResultView::makeHeader()
{
    auto *header = new QWidget(this);
    m_title = new QLabel(header);
    QFont big = m_title->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    m_title->setFont(big);
    m_title->setTextFormat(Qt::PlainText);
    m_subtitle = new QLabel(header);
    m_subtitle->setTextFormat(Qt::PlainText);
    m_subtitle->setWordWrap(true);
    m_readLabel = new QLabel(header);
    m_read = new QComboBox(header);
    m_read->setObjectName(QStringLiteral("read"));
    m_readLabel->setBuddy(m_read);
    m_runLabel = new QLabel(header);
    m_run = new QSlider(Qt::Horizontal, header);
    m_run->setObjectName(QStringLiteral("runOfSeries"));
    m_run->setMinimumWidth(60);
    m_runLabel->setBuddy(m_run);
    m_copy = new QPushButton(header);
    m_copy->setObjectName(QStringLiteral("copy"));
    m_export = new QPushButton(header);
    m_export->setObjectName(QStringLiteral("export"));
    m_export->setMenu(m_exportMenu);

    m_blank->setObjectName(QStringLiteral("blank"));
    m_brushButton->setObjectName(QStringLiteral("brush"));
    m_layoutButton->setObjectName(QStringLiteral("layout"));
    m_layoutButton->setMenu(m_layoutMenu);

    auto *titles = new QHBoxLayout;
    titles->addWidget(m_title, 1);
    titles->addWidget(m_copy);
    titles->addWidget(m_export);
    for (QWidget *unused : {static_cast<QWidget *>(m_readLabel), static_cast<QWidget *>(m_read),
                            static_cast<QWidget *>(m_runLabel), static_cast<QWidget *>(m_run)})
        unused->hide();
    auto *choice = new QHBoxLayout;
    choice->addWidget(m_readLabel);
    choice->addWidget(m_read);
    choice->addWidget(m_runLabel);
    choice->addWidget(m_run);
    choice->addStretch();
    auto *controls = new QHBoxLayout;
    controls->addWidget(m_blank);
    controls->addStretch();
    controls->addWidget(m_brushButton);
    controls->addWidget(m_layoutButton);
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins({});
    layout->setSpacing(4);
    layout->addLayout(titles);
    layout->addWidget(m_subtitle);
    layout->addLayout(choice);
    layout->addLayout(controls);
    return header;
}

void ResultView::setContent(const QString &content)
{
    if (!m_plate->selection().contains(true)) {
        m_brush = content;
        showBrush();
        return;
    }
    PlateLayout layout = m_layout;
    layout.setContent(m_plate->selection(), content);
    setLayoutOfWells(layout);
}

void ResultView::paintContent()
{
    if (!m_brush)
        return;
    setContent(*m_brush);
    m_plate->setSelection(QVector<bool>(m_plate->selection().size()));
}

void ResultView::stopPainting()
{
    m_brush.reset();
    showBrush();
}

void ResultView::showBrush()
{
    m_brushButton->setVisible(m_brush.has_value());
    m_plate->setCursor(m_brush ? Qt::CrossCursor : Qt::ArrowCursor);
    if (m_brush)
        m_brushButton->setText(text("qelworkbench-layout-painting",
                                    m_brush->isEmpty() ? text("qelworkbench-layout-nothing")
                                                       : contentTitle(*m_brush)));
}

void ResultView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape && m_brush)
        stopPainting();
    else
        QWidget::keyPressEvent(event);
}

void ResultView::setLayoutOfWells(const PlateLayout &layout)
{
    if (m_results.isEmpty())
        return;
    m_layout = layout;
    Entry &entry = m_results.first().entry;
    entry.layout = layout.toJson();
    LayoutMenu::remember(layout);
    Q_EMIT layoutChanged(entry.file, entry.layout);
    showRun();
}

void ResultView::retranslate()
{
    showBrush();
    m_brushButton->setToolTip(text("qelworkbench-layout-painting-tip"));
    m_blank->setText(text("qelworkbench-subtract-blanks"));
    m_layoutButton->setText(text("qelworkbench-layout"));
    m_readLabel->setText(text("qelworkbench-read"));
    m_copy->setText(text("qelworkbench-copy"));
    m_copy->setToolTip(text("qelworkbench-copy-tip"));
    m_export->setText(text("qelworkbench-export"));
    m_tabs->setTabText(0, text("qelworkbench-tab-plate"));
    m_tabs->setTabText(1, text("qelworkbench-tab-table"));
    m_tabs->setTabText(2, text("qelworkbench-tab-curves"));
    m_plate->setAccessibleName(text("qelworkbench-tab-plate"));
    m_table->setAccessibleName(text("qelworkbench-tab-table"));
    m_run->setAccessibleName(text("qelworkbench-column-run"));
    m_read->setAccessibleName(text("qelworkbench-read"));
    if (!m_results.isEmpty())
        showRun();
}

void ResultView::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

void ResultView::clear(const QString &hint)
{
    m_results.clear();
    stopPainting();
    m_plain->setText(hint);
    m_pages->setCurrentIndex(0);
}

const QVector<Result> &ResultView::results() const
{
    return m_results;
}

PlateView *ResultView::plateView() const
{
    return m_plate;
}

const Result *ResultView::current() const
{
    const int run = m_run->value();
    return run >= 0 && run < m_results.size() ? &m_results[run] : nullptr;
}

void ResultView::setResults(const QVector<Result> &results)
{
    if (results.isEmpty()) {
        clear();
        return;
    }
    const bool isSameRun = !m_results.isEmpty()
        && m_results.constFirst().entry.file == results.constFirst().entry.file;
    if (!isSameRun)
        stopPainting();
    m_results = results;
    const int read = std::max(0, m_read->currentIndex());
    const QSignalBlocker blockRead(m_read);
    const QSignalBlocker blockRun(m_run);
    m_run->setRange(0, m_results.size() - 1);
    m_run->setValue(m_results.size() - 1);
    m_read->clear();
    if (const auto &plate = m_results.constLast().run.plate) {
        for (const auto &one : plate->reads)
            m_read->addItem(one.label);
    }
    m_read->setCurrentIndex(read < m_read->count() ? read : 0);
    const bool isSeries = m_results.size() > 1;
    m_run->setVisible(isSeries);
    m_runLabel->setVisible(isSeries);
    m_readLabel->setVisible(m_read->count() > 1);
    m_read->setVisible(m_read->count() > 1);
    m_tabs->setTabEnabled(2, isSeries);
    if (const auto &plate = m_results.constLast().run.plate) {
        m_layout =
            PlateLayout::fromJson(m_results.constFirst().entry.layout, plate->rows, plate->columns);
        m_layoutMenu->setPlate(plate->rows, plate->columns);
    }
    showRun();
}

void ResultView::showRun()
{
    const Result *result = current();
    if (!result)
        return;
    m_title->setText(result->entry.name.isEmpty() ? featureTitle(result->run.record.feature)
                                                  : result->entry.name);
    if (!result->run.plate) {
        m_plain->setText(featureTitle(result->run.record.feature) + QStringLiteral("\n\n")
                         + plainText(result->run.record.outcome.result));
        m_pages->setCurrentIndex(0);
        return;
    }
    m_pages->setCurrentIndex(1);
    QStringList facts{QStringLiteral("%1 %2").arg(result->run.record.device.name(),
                                                  result->run.record.device.serial()),
                      QLocale().toString(result->entry.startedAt.toLocalTime(),
                                         text("qelworkbench-time-format"))};
    if (result->run.plate->temperature)
        facts.append(QLocale().toString(*result->run.plate->temperature, 'f', 1)
                     + QStringLiteral(" °C"));
    m_subtitle->setText(facts.join(QStringLiteral("  ·  ")));
    m_runLabel->setText(text("qelworkbench-run-of", QString::number(m_run->value() + 1),
                             QString::number(m_results.size())));

    m_plate->setPicture(shownPicture(*result));
    fillTable();
    showCurves();
    m_exportMenu->setFileName(result->entry.name.isEmpty()
                                  ? QFileInfo(result->entry.file).completeBaseName()
                                  : result->entry.name);
}

// The values as they were measured, or above the blanks if that is wanted and can be told.
PlatePicture ResultView::shownPicture(const Result &result)
{
    const PlatePicture measured = pictureOf(result, std::max(0, m_read->currentIndex()), m_layout);
    const auto blank = m_layout.blank(measured.values, measured.maximum);
    m_blank->setEnabled(blank.has_value());
    m_blank->setToolTip(text(blank ? "qelworkbench-blank-tip" : "qelworkbench-no-blank-tip"));
    return blank && m_blank->isChecked() ? aboveBlank(measured, *blank) : measured;
}

void ResultView::fillTable()
{
    const PlatePicture &picture = m_plate->picture();
    m_table->setRowCount(picture.rows);
    m_table->setColumnCount(picture.columns);
    for (int row = 0; row < picture.rows; ++row) {
        m_table->setVerticalHeaderItem(row, new QTableWidgetItem(qel::frontend::rowName(row)));
        for (int column = 0; column < picture.columns; ++column) {
            const double value = picture.values.value(row * picture.columns + column);
            auto *item = new QTableWidgetItem(valueText(value));
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            if (picture.isSaturated(value)) {
                item->setText(QStringLiteral("≥ ") + item->text());
                item->setToolTip(text("qelworkbench-saturated"));
            }
            m_table->setItem(row, column, item);
        }
    }
    m_table->horizontalHeader()->setDefaultSectionSize(
        fontMetrics().horizontalAdvance(QStringLiteral("≥ 8888888.8")));
}

void ResultView::showCurves()
{
    QVector<bool> wells = m_plate->selection();
    if (!wells.contains(true) && !wells.isEmpty())
        wells[0] = true;
    if (m_results.size() > 1)
        m_curves->show(m_results, std::max(0, m_read->currentIndex()), wells);
}

void ResultView::copy()
{
    if (!current() || !current()->run.plate)
        return;
    QApplication::clipboard()->setText(clipboardTable(m_plate->picture()));
    Q_EMIT said(text("qelworkbench-copied"), false);
}

void ResultView::exportAs(ExportFormat format, const QString &path)
{
    if (!current())
        return;
    PlatePicture picture = m_plate->picture();
    picture.title = m_title->text() + QStringLiteral("  ·  ") + m_subtitle->text();
    QString problem;
    if (exportTo(path, format, m_results, picture, &problem))
        Q_EMIT said(text("qelworkbench-exported", QDir::toNativeSeparators(path)), false);
    else
        Q_EMIT said(sentence(problem), true);
}

} // namespace qelworkbench
