#include "resultview.h"

#include "curves.h"
#include "plaintext.h"
#include "plateview.h"
#include "statistics.h"
#include "text.h"

#include <qelfrontend/wells.h>

#include <QtCore/QDir>
#include <QtCore/QEvent>
#include <QtCore/QJsonDocument>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtGui/QClipboard>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QHeaderView>
#include <QtWidgets/QInputDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenu>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSlider>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableWidget>

#include <algorithm>

namespace qelworkbench {

namespace {

struct Way
{
    ExportFormat format;
    const char *title;
};

constexpr Way ways[] = {
    {ExportFormat::Spreadsheet, "qelworkbench-export-xlsx"},
    {ExportFormat::TidyCsv, "qelworkbench-export-tidy"},
    {ExportFormat::PlateCsv, "qelworkbench-export-plate"},
    {ExportFormat::Json, "qelworkbench-export-json"},
    {ExportFormat::Png, "qelworkbench-export-png"},
    {ExportFormat::Svg, "qelworkbench-export-svg"},
};

} // namespace

ResultView::ResultView(QWidget *parent)
    : QWidget(parent)
    , m_blank(new QCheckBox(this))
    , m_layoutButton(new QPushButton(this))
    , m_layoutMenu(new QMenu(this))
    , m_menu(new QMenu(this))
    , m_pages(new QStackedWidget(this))
    , m_plain(new QLabel(this))
    , m_tabs(new QTabWidget(this))
    , m_plate(new PlateView(this))
    , m_table(new QTableWidget(this))
    , m_curves(new Curves(this))
    , m_well(new QLabel(this))
    , m_statistics(new QLabel(this))
    , m_legend(new QLabel(this))
{
    setObjectName(QStringLiteral("result"));
    m_plate->setObjectName(QStringLiteral("plate"));
    m_plain->setAlignment(Qt::AlignCenter);
    m_plain->setWordWrap(true);
    m_plain->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_well->setObjectName(QStringLiteral("well"));
    m_statistics->setObjectName(QStringLiteral("statistics"));
    m_statistics->setWordWrap(true);
    m_tabs->addTab(m_plate, QString());
    m_tabs->addTab(m_table, QString());
    m_tabs->addTab(m_curves, QString());
    m_tabs->setDocumentMode(true);

    auto *shown = new QWidget(this);
    auto *layout = new QVBoxLayout(shown);
    layout->setContentsMargins({});
    layout->addWidget(makeHeader());
    layout->addWidget(m_tabs, 1);
    auto *foot = new QHBoxLayout;
    foot->addWidget(m_well);
    foot->addStretch();
    foot->addWidget(m_legend);
    layout->addLayout(foot);
    layout->addWidget(m_statistics);
    m_pages->addWidget(m_plain);
    m_pages->addWidget(shown);
    auto *all = new QVBoxLayout(this);
    all->setContentsMargins({});
    all->addWidget(m_pages);

    connect(m_read, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ResultView::showRun);
    connect(m_run, &QSlider::valueChanged, this, &ResultView::showRun);
    connect(m_blank, &QCheckBox::toggled, this, &ResultView::showRun);
    connect(m_copy, &QPushButton::clicked, this, &ResultView::copy);
    connect(m_plate, &PlateView::selectionChanged, this, &ResultView::showSelection);
    connect(m_plate, &PlateView::currentChanged, this, &ResultView::showCurrentWell);
    clear();
    retranslate();
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
    m_run->setMinimumWidth(120);
    m_runLabel->setBuddy(m_run);
    m_copy = new QPushButton(header);
    m_copy->setObjectName(QStringLiteral("copy"));
    m_export = new QPushButton(header);
    m_export->setObjectName(QStringLiteral("export"));
    m_export->setMenu(m_menu);

    m_blank->setObjectName(QStringLiteral("blank"));
    m_layoutButton->setObjectName(QStringLiteral("layout"));
    m_layoutButton->setMenu(m_layoutMenu);

    auto *titles = new QHBoxLayout;
    titles->addWidget(m_title, 1);
    titles->addWidget(m_copy);
    titles->addWidget(m_export);
    auto *controls = new QHBoxLayout;
    controls->addWidget(m_readLabel);
    controls->addWidget(m_read);
    controls->addWidget(m_runLabel);
    controls->addWidget(m_run);
    controls->addStretch();
    controls->addWidget(m_blank);
    controls->addWidget(m_layoutButton);
    auto *layout = new QVBoxLayout(header);
    layout->setContentsMargins({});
    layout->setSpacing(4);
    layout->addLayout(titles);
    layout->addWidget(m_subtitle);
    layout->addLayout(controls);
    return header;
}

void ResultView::makeExportMenu()
{
    m_menu->clear();
    for (const Way &way : ways) {
        QAction *action = m_menu->addAction(text(way.title));
        connect(action, &QAction::triggered, this, [this, &way] { exportAs(way.format); });
    }
}

void ResultView::makeLayoutMenu()
{
    m_layoutMenu->clear();
    const auto add = [this](const QString &title, auto what) {
        connect(m_layoutMenu->addAction(title), &QAction::triggered, this, what);
    };
    for (const char *content : {"sample", "blank", "control"}) {
        const QString name = QString::fromLatin1(content);
        add(contentTitle(name), [this, name] { setContent(name); });
    }
    add(text("qelworkbench-layout-standard"), [this] { askForStandard(); });
    add(text("qelworkbench-layout-nothing"), [this] { setContent(QString()); });
    m_layoutMenu->addSeparator();
    add(text("qelworkbench-layout-last"), [this] {
        const QSettings settings;
        const auto last = settings.value(QStringLiteral("lastLayout")).toJsonObject();
        setLayoutOfWells(
            PlateLayout::fromJson(last, m_plate->picture().rows, m_plate->picture().columns));
    });
    add(text("qelworkbench-layout-csv"), [this] { askForLayout(); });
}

void ResultView::setContent(const QString &content)
{
    if (!m_plate->selection().contains(true)) {
        Q_EMIT said(text("qelworkbench-layout-select"), false);
        return;
    }
    PlateLayout layout = m_layout;
    layout.setContent(m_plate->selection(), content);
    setLayoutOfWells(layout);
}

void ResultView::askForStandard()
{
    bool isGiven = false;
    const double concentration =
        QInputDialog::getDouble(this, text("qelworkbench-layout-standard"),
                                text("qelworkbench-layout-concentration"), 1, 0, 1e12, 4, &isGiven);
    if (isGiven)
        setContent(QStringLiteral("standard ") + QString::number(concentration, 'g', 12));
}

void ResultView::askForLayout()
{
    const QString path = QFileDialog::getOpenFileName(this, text("qelworkbench-layout-csv"),
                                                      QString(), QStringLiteral("*.csv"));
    if (!path.isEmpty())
        loadLayout(path);
}

void ResultView::loadLayout(const QString &path)
{
    QFile file(path);
    QString problem;
    if (!file.open(QIODevice::ReadOnly)) {
        Q_EMIT said(
            text("qelworkbench-cannot-read", QDir::toNativeSeparators(path), file.errorString()),
            true);
        return;
    }
    const auto layout = PlateLayout::fromCsv(file.readAll(), m_plate->picture().rows,
                                             m_plate->picture().columns, &problem);
    if (layout)
        setLayoutOfWells(*layout);
    else
        Q_EMIT said(problem, true);
}

void ResultView::setLayoutOfWells(const PlateLayout &layout)
{
    if (m_results.isEmpty())
        return;
    m_layout = layout;
    Entry &entry = m_results.first().entry;
    entry.layout = layout.toJson();
    QSettings().setValue(QStringLiteral("lastLayout"), entry.layout);
    Q_EMIT layoutChanged(entry.file, entry.layout);
    showRun();
}

void ResultView::retranslate()
{
    makeExportMenu();
    makeLayoutMenu();
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

    m_plate->setPicture(pictureOf(*result));
    fillTable();
    showSelection();
}

// The values as they were measured, or above the blanks if that is wanted and can be told.
PlatePicture ResultView::pictureOf(const Result &result)
{
    PlatePicture picture;
    picture.rows = result.run.plate->rows;
    picture.columns = result.run.plate->columns;
    picture.values = result.run.plate->reads.value(std::max(0, m_read->currentIndex())).values;
    picture.unit = result.run.plate->unit;
    picture.maximum = result.run.plate->maximum;
    picture.rings = m_layout.colors();
    for (int well = 0; well < picture.values.size(); ++well)
        picture.contents.append(contentTitle(m_layout.content(well)));
    const auto blank = m_layout.blank(picture.values, result.run.plate->maximum);
    m_blank->setEnabled(blank.has_value());
    m_blank->setToolTip(text(blank ? "qelworkbench-blank-tip" : "qelworkbench-no-blank-tip"));
    if (blank && m_blank->isChecked()) {
        for (double &value : picture.values)
            value -= *blank;
        if (picture.maximum)
            *picture.maximum -= *blank;
        picture.unit = text("qelworkbench-above-blank", picture.unit);
    }
    return picture;
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

void ResultView::showSelection()
{
    const Result *result = current();
    if (!result || !result->run.plate)
        return;
    const QVector<bool> &selection = m_plate->selection();
    const Statistics numbers =
        statisticsOf(m_plate->picture().values, selection, m_plate->picture().maximum);
    const QString unit = m_plate->picture().unit;
    QStringList parts{text(selection.contains(true) ? "qelworkbench-statistics-selected"
                                                    : "qelworkbench-statistics-all",
                           QString::number(numbers.count))};
    // With saturated wells the mean is only a limit, and the deviation means nothing.
    const bool isLimit = numbers.saturated > 0;
    if (numbers.count > 0) {
        parts.append(text("qelworkbench-statistics-mean",
                          (isLimit ? QStringLiteral("≥ ") : QString()) + valueText(numbers.mean),
                          unit));
    }
    if (numbers.deviation && !isLimit)
        parts.append(
            text("qelworkbench-statistics-deviation", valueText(*numbers.deviation), unit));
    if (numbers.variation && !isLimit)
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

    QVector<bool> wells = selection;
    if (!wells.contains(true) && !wells.isEmpty())
        wells[0] = true;
    if (m_results.size() > 1)
        m_curves->show(m_results, std::max(0, m_read->currentIndex()), wells);
    showCurrentWell();
}

void ResultView::showCurrentWell()
{
    const QString well = m_plate->wellText(m_plate->currentWell());
    m_well->setText(well.isEmpty() ? text("qelworkbench-well-hint") : well);
}

void ResultView::copy()
{
    if (!current() || !current()->run.plate)
        return;
    QApplication::clipboard()->setText(clipboardTable(m_plate->picture()));
    Q_EMIT said(text("qelworkbench-copied"), false);
}

void ResultView::exportAs(ExportFormat format)
{
    const Result *result = current();
    if (!result)
        return;
    QSettings settings;
    const QString key = QStringLiteral("exportFolder");
    const QString folder =
        settings.value(key, QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation))
            .toString();
    QString stem = result->entry.name.isEmpty() ? QFileInfo(result->entry.file).completeBaseName()
                                                : result->entry.name;
    stem.replace(QLatin1Char('/'), QLatin1Char('-'));
    const QString suffix = suffixOf(format);
    QString path =
        QFileDialog::getSaveFileName(this, text("qelworkbench-export"),
                                     folder + QLatin1Char('/') + stem + QLatin1Char('.') + suffix,
                                     QStringLiteral("*.") + suffix);
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + suffix;
    settings.setValue(key, QFileInfo(path).path());
    PlatePicture picture = m_plate->picture();
    picture.title = m_title->text() + QStringLiteral("  ·  ") + m_subtitle->text();
    QString problem;
    if (exportTo(path, format, m_results, picture, &problem))
        Q_EMIT said(text("qelworkbench-exported", QDir::toNativeSeparators(path)), false);
    else
        Q_EMIT said(sentence(problem), true);
}

} // namespace qelworkbench
