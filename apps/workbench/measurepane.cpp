#include "measurepane.h"

#include "banner.h"
#include "choices.h"
#include "instruments.h"
#include "presetbox.h"
#include "resultview.h"
#include "settingsform.h"
#include "text.h"

#include <qelfrontend/configuration.h>

#include <qelvalues/features.h>
#include <qelvalues/names.h>

#include <QtCore/QEvent>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QFormLayout>
#include <QtWidgets/QGroupBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QScrollArea>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QSplitter>

#include <algorithm>

namespace qelworkbench {

using qel::devices::Device;

MeasurePane::MeasurePane(QWidget *parent)
    : QWidget(parent)
    , m_banner(new Banner(this))
    , m_result(new ResultView(this))
{
    auto *splitter = new QSplitter(Qt::Horizontal, this);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(12);
    splitter->addWidget(makeForm());
    splitter->addWidget(m_result);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({310, 700});
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_banner);
    layout->addWidget(splitter, 1);

    connect(m_feature, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &MeasurePane::showForm);
    connect(m_start, &QPushButton::clicked, this, &MeasurePane::start);
    connect(m_count, QOverload<int>::of(&QSpinBox::valueChanged), this,
            [this](int count) { m_interval->setEnabled(count > 1); });
    const auto withInstrument = [this](void (Instrument::*what)()) {
        return [this, what] {
            if (m_instrument)
                (m_instrument->*what)();
        };
    };
    connect(m_cancel, &QPushButton::clicked, this, withInstrument(&Instrument::cancel));
    connect(m_banner, &Banner::confirmed, this, withInstrument(&Instrument::confirmAction));
    connect(m_banner, &Banner::refused, this, withInstrument(&Instrument::abortAction));
    connect(m_banner, &Banner::againWanted, this, [this] {
        if (m_instrument && m_instrument->unkeptCount() > 0)
            m_instrument->keepAgain();
        else if (m_instrument)
            m_instrument->open();
    });
    connect(m_banner, &Banner::folderWanted, this, &MeasurePane::folderWanted);
    m_clock.setInterval(500);
    connect(&m_clock, &QTimer::timeout, this, &MeasurePane::showProgress);
    retranslate();
    setInstrument(nullptr);
}

QWidget *MeasurePane::makeForm()
{
    auto *form = new QWidget(this);
    form->setMinimumWidth(300);
    m_title = new QLabel(form);
    m_title->setTextFormat(Qt::PlainText);
    m_title->setWordWrap(true);
    QFont big = m_title->font();
    big.setPointSizeF(big.pointSizeF() * 1.3);
    big.setBold(true);
    m_title->setFont(big);

    auto *top = new QFormLayout;
    m_featureLabel = new QLabel(form);
    m_feature = new QComboBox(form);
    m_feature->setObjectName(QStringLiteral("feature"));
    m_feature->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_featureLabel->setBuddy(m_feature);
    m_presetLabel = new QLabel(form);
    m_form = new SettingsForm;
    m_preset = new PresetBox(m_form, form);
    m_presetLabel->setBuddy(m_preset);
    top->addRow(m_featureLabel, m_feature);
    top->addRow(m_presetLabel, m_preset);

    m_scroll = new QScrollArea(form);
    m_scroll->setWidgetResizable(true);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    auto *scrolled = new QWidget;
    auto *column = new QVBoxLayout(scrolled);
    column->setContentsMargins({});
    column->setSpacing(10);
    m_scroll->setWidget(scrolled);
    scrolled->setAutoFillBackground(false);
    m_scroll->viewport()->setAutoFillBackground(false);
    m_form->setAutoFillBackground(false);

    m_series = new QGroupBox(form);
    m_countLabel = new QLabel(m_series);
    m_count = new QSpinBox(m_series);
    m_count->setObjectName(QStringLiteral("count"));
    m_count->setRange(1, 10000);
    m_countLabel->setBuddy(m_count);
    m_intervalLabel = new QLabel(m_series);
    m_interval = new QDoubleSpinBox(m_series);
    m_interval->setObjectName(QStringLiteral("interval"));
    m_interval->setRange(0, 86400);
    m_interval->setDecimals(1);
    m_interval->setValue(60);
    m_interval->setSuffix(QStringLiteral(" s"));
    m_interval->setEnabled(false);
    m_intervalLabel->setBuddy(m_interval);
    auto *series = new QFormLayout(m_series);
    series->addRow(m_countLabel, m_count);
    series->addRow(m_intervalLabel, m_interval);

    m_nameLabel = new QLabel(form);
    m_name = new QLineEdit(form);
    m_name->setObjectName(QStringLiteral("name"));
    m_nameLabel->setBuddy(m_name);
    m_start = new QPushButton(form);
    m_start->setObjectName(QStringLiteral("start"));
    QFont bold = m_start->font();
    bold.setBold(true);
    bold.setPointSizeF(bold.pointSizeF() * 1.2);
    m_start->setFont(bold);
    m_start->setMinimumHeight(44);
    m_cancel = new QPushButton(form);
    m_cancel->setObjectName(QStringLiteral("cancel"));
    m_cancel->setMinimumHeight(44);
    m_progress = new QProgressBar(form);
    m_progress->setTextVisible(false);
    m_progressText = new QLabel(form);
    m_progressText->setWordWrap(true);

    column->addWidget(m_form);
    column->addWidget(m_series);
    column->addWidget(m_nameLabel);
    column->addWidget(m_name);
    column->addStretch();
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(m_start, 2);
    buttons->addWidget(m_cancel, 1);
    auto *layout = new QVBoxLayout(form);
    layout->setContentsMargins({});
    layout->setSpacing(10);
    layout->addWidget(m_title);
    layout->addLayout(top);
    layout->addWidget(m_scroll, 1);
    layout->addLayout(buttons);
    layout->addWidget(m_progress);
    layout->addWidget(m_progressText);
    return form;
}

void MeasurePane::retranslate()
{
    m_featureLabel->setText(text("qelworkbench-feature"));
    m_presetLabel->setText(text("qelworkbench-preset"));
    m_series->setTitle(text("qelworkbench-series"));
    m_countLabel->setText(text("qelworkbench-series-count"));
    m_intervalLabel->setText(text("qelworkbench-series-interval"));
    m_nameLabel->setText(text("qelworkbench-run-name"));
    m_name->setPlaceholderText(text("qelworkbench-run-name-hint"));
    m_start->setText(text("qelworkbench-start"));
    m_cancel->setText(text("qelworkbench-cancel"));
    m_progress->setAccessibleName(text("qelworkbench-progress"));
    m_interval->setLocale(QLocale());
    if (m_result->results().isEmpty())
        m_result->clear(text("qelworkbench-no-result"));
    showFeatures();
    showState();
}

void MeasurePane::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QWidget::changeEvent(event);
}

ResultView *MeasurePane::resultView() const
{
    return m_result;
}

void MeasurePane::setResults(const QVector<Result> &results)
{
    m_result->setResults(results);
    if (results.isEmpty())
        m_result->clear(text("qelworkbench-no-result"));
}

void MeasurePane::setInstrument(Instrument *instrument)
{
    if (m_instrument)
        m_instrument->disconnect(this);
    if (instrument != m_instrument) {
        m_name->clear();
        m_wantedFeature = instrument ? choices::lastFeature(instrument->info()) : QString();
    }
    m_instrument = instrument;
    if (instrument) {
        connect(instrument, &Instrument::changed, this, &MeasurePane::showState);
        connect(instrument, &Instrument::featuresChanged, this, &MeasurePane::showFeatures);
        connect(instrument, &Instrument::finished, this, [this] {
            // The next plate is another one.
            if (m_instrument->problem().isEmpty())
                m_name->clear();
        });
        instrument->open();
    }
    showFeatures();
    showState();
}

Device::DeviceFeature MeasurePane::feature() const
{
    return Device::DeviceFeature(m_feature->currentData().toInt());
}

void MeasurePane::showFeatures()
{
    const Device::DeviceFeature before = feature();
    const QSignalBlocker blocker(m_feature);
    QList<Device::DeviceFeature> features =
        m_instrument ? m_instrument->features() : QList<Device::DeviceFeature>();
    // What people come for stands first.
    std::stable_partition(features.begin(), features.end(), &qel::values::isMeasurement);
    m_feature->clear();
    for (const Device::DeviceFeature one : qAsConst(features))
        m_feature->addItem(featureTitle(one), int(one));
    m_feature->setCurrentIndex(std::max(0, m_feature->findData(int(before))));
    const auto wanted = std::find_if(features.begin(), features.end(), [this](auto one) {
        return qel::values::featureArgument(one) == m_wantedFeature;
    });
    if (wanted != features.end()) {
        m_wantedFeature.clear();
        m_feature->setCurrentIndex(int(std::distance(features.begin(), wanted)));
    }
    showForm();
}

void MeasurePane::showForm()
{
    const bool isMeasuring = qel::values::isMeasurement(feature());
    const bool isNew = m_form->setDescriptor(
        m_instrument && m_feature->count() > 0 ? m_instrument->descriptor(feature()) : QVariant());
    if (isNew && m_instrument)
        recallSettings();
    orderTabs();
    // Nothing of it is ever scrolled to the side.
    m_scroll->setMinimumWidth(m_scroll->widget()->minimumSizeHint().width()
                              + m_scroll->verticalScrollBar()->sizeHint().width());
    m_series->setVisible(isMeasuring);
    m_nameLabel->setVisible(isMeasuring);
    m_name->setVisible(isMeasuring);
    if (!isMeasuring)
        m_count->setValue(1);
    m_preset->setFeature(m_feature->count() > 0 ? qel::values::featureArgument(feature())
                                                : QString());
    showState();
}

// Unless the instrument does not take any more what it took then.
void MeasurePane::recallSettings()
{
    const QJsonObject settings =
        choices::lastConfiguration(m_instrument->info(), qel::values::featureArgument(feature()));
    QStringList ignored;
    if (qel::frontend::readConfiguration(settings, m_instrument->descriptor(feature()), &ignored))
        m_form->setConfiguration(settings);
}

// The fields of the form are made late, and come between those above and below nevertheless.
void MeasurePane::orderTabs()
{
    QWidget *last = m_preset->findChild<QPushButton *>();
    const auto follow = [&last](QWidget *next) {
        setTabOrder(last, next);
        last = next;
    };
    const auto inputs = m_form->findChildren<QWidget *>();
    for (QWidget *input : inputs) {
        if ((input->focusPolicy() & Qt::TabFocus) && !input->focusProxy())
            follow(input);
    }
    for (QWidget *input : {static_cast<QWidget *>(m_count), static_cast<QWidget *>(m_interval),
                           static_cast<QWidget *>(m_name), static_cast<QWidget *>(m_start),
                           static_cast<QWidget *>(m_cancel)})
        follow(input);
}

void MeasurePane::start()
{
    const auto configuration = m_form->configuration();
    if (!m_instrument || !configuration)
        return;
    Order order;
    order.feature = feature();
    order.configuration = *configuration;
    order.count = m_count->value();
    order.interval = int(m_interval->value() * 1000);
    order.name = m_name->text().trimmed();
    // Nobody is to move or to update anything by mistake the next day.
    if (qel::values::isMeasurement(order.feature))
        choices::remember(m_instrument->info(), qel::values::featureArgument(order.feature),
                          order.configuration);
    m_instrument->start(order);
    m_cancel->setFocus();
}

void MeasurePane::showState()
{
    const bool isBusy = m_instrument && m_instrument->isBusy();
    const bool canStart = m_instrument && !isBusy && m_feature->count() > 0
        && m_instrument->state() == Instrument::Ready;
    m_title->setText(m_instrument ? m_instrument->info().name()
                                  : text("qelworkbench-no-instrument"));
    const bool hadCancel = m_cancel->hasFocus();
    m_start->setEnabled(canStart);
    m_cancel->setEnabled(isBusy && m_instrument->state() != Instrument::Stopping);
    if (hadCancel && canStart)
        m_start->setFocus();
    for (QWidget *widget : {static_cast<QWidget *>(m_feature), static_cast<QWidget *>(m_preset),
                            static_cast<QWidget *>(m_form), static_cast<QWidget *>(m_series)})
        widget->setEnabled(!isBusy);
    if (isBusy && !m_clock.isActive())
        m_clock.start();
    else if (!isBusy)
        m_clock.stop();
    m_banner->showFor(m_instrument);
    showProgress();
}

void MeasurePane::showProgress()
{
    const bool isBusy = m_instrument && m_instrument->isBusy();
    m_progress->setVisible(isBusy);
    m_progressText->setVisible(isBusy);
    if (!isBusy)
        return;
    const double progress = m_instrument->progress();
    const bool isPausing = m_instrument->state() == Instrument::Pausing;
    m_progress->setRange(0, progress < 0 && !isPausing ? 0 : 1000);
    m_progress->setValue(isPausing ? 1000 : int(progress * 1000));
    QString line = Instruments::stateText(*m_instrument);
    // Early progress tells little about the rest.
    if (progress > 0.05 && m_instrument->state() == Instrument::Measuring) {
        const double left = double(m_instrument->elapsed()) * (1 - progress) / progress / 1000;
        line +=
            QLatin1Char('\n') + text("qelworkbench-time-left", QString::number(int(left + 0.999)));
    }
    m_progressText->setText(line);
}

} // namespace qelworkbench
