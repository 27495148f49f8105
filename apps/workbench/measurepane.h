#ifndef QELWORKBENCH_MEASUREPANE_H
#define QELWORKBENCH_MEASUREPANE_H

#include "instrument.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QComboBox;
class QDoubleSpinBox;
class QGroupBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QScrollArea;
class QSpinBox;

namespace qelworkbench {

class Banner;
class PresetBox;
class ResultView;
class SettingsForm;

/// Where one measures: what, with which settings, how often; one button; and the result beside it.
/// Requests for action and problems stand in the pane, never in front of it.
class MeasurePane : public QWidget
{
    Q_OBJECT

public:
    explicit MeasurePane(QWidget *parent = nullptr);

    /// Shows another instrument; null for none. A closed one is opened, so that its features show.
    void setInstrument(Instrument *instrument);
    /// Shows what has been measured last, with its series.
    void setResults(const QVector<Result> &results);
    ResultView *resultView() const;

Q_SIGNALS:
    /// The operator wants to choose another folder for what could not be kept.
    void folderWanted();

protected:
    void changeEvent(QEvent *event) override;

private:
    QWidget *makeForm();
    void retranslate();
    void showFeatures();
    void showForm();
    void recallSettings();
    void orderTabs();
    void showState();
    void showProgress();
    void start();
    qel::devices::Device::DeviceFeature feature() const;

    QPointer<Instrument> m_instrument;
    QString m_wantedFeature; // to choose as soon as the instrument offers it
    QLabel *m_title;
    QLabel *m_featureLabel;
    QComboBox *m_feature;
    QLabel *m_presetLabel;
    PresetBox *m_preset;
    QScrollArea *m_scroll;
    SettingsForm *m_form;
    QGroupBox *m_series;
    QLabel *m_countLabel;
    QSpinBox *m_count;
    QLabel *m_intervalLabel;
    QDoubleSpinBox *m_interval;
    QLabel *m_nameLabel;
    QLineEdit *m_name;
    QPushButton *m_start;
    QPushButton *m_cancel;
    QProgressBar *m_progress;
    QLabel *m_progressText;
    Banner *m_banner;
    ResultView *m_result;
    QTimer m_clock;
};

} // namespace qelworkbench

#endif
