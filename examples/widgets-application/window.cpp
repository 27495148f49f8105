#include "window.h"

#include <qelfrontend/plate.h>
#include <qelfrontend/platetext.h>

#include <qeldevices/devicebroker.h>

#include <QtGui/QFontDatabase>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

using namespace qel::devices;
using namespace qel::frontend;

Window::Window()
{
    auto *top = new QHBoxLayout;
    top->addWidget(&m_instruments, 1);
    top->addWidget(&m_measure);
    top->addWidget(&m_cancel);
    auto *layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addWidget(&m_progress);
    layout->addWidget(&m_plate);
    layout->addWidget(&m_status);
    m_plate.setReadOnly(true);
    m_plate.setLineWrapMode(QPlainTextEdit::NoWrap);
    m_plate.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_status.setWordWrap(true);
    resize(800, 400);

    connect(&m_measure, &QPushButton::clicked, this, &Window::measure);
    connect(&m_cancel, &QPushButton::clicked, this, [this] { m_run->cancel(); });
    connect(&m_watch, &InstrumentWatch::arrived, this, &Window::showInstruments);
    connect(&m_watch, &InstrumentWatch::left, this, &Window::showInstruments);
    connect(&m_watch, &InstrumentWatch::changed, this, &Window::showInstruments);
    m_watch.start();
    showButtons();
}

void Window::showInstruments()
{
    const QString chosen = m_instruments.currentText();
    m_instruments.clear();
    const QList<DeviceInfo> instruments = m_watch.instruments();
    for (const DeviceInfo &info : instruments)
        m_instruments.addItem(QStringLiteral("%1 (%2)").arg(info.name(), info.serial()));
    m_instruments.setCurrentText(chosen);
    showButtons();
}

void Window::showButtons()
{
    m_instruments.setEnabled(!m_run);
    m_measure.setEnabled(!m_run && m_instruments.count() > 0);
    m_cancel.setEnabled(bool(m_run));
}

void Window::measure()
{
    m_device.reset(
        DeviceBroker::createDevice(m_watch.instruments().at(m_instruments.currentIndex())));
    if (!m_device) {
        m_status.setText(QStringLiteral("The instrument has gone."));
        return;
    }
    RunRequest request;
    request.feature = Device::DF_AbsorbanceMeasurement;
    request.deadline = std::chrono::minutes(10);
    request.configure = [](const QVariant &, QString *) {
        AbsorbanceMeasurement_config configuration;
        configuration.setWavelengths({450});
        return QVariant(configuration);
    };
    m_run = std::make_unique<Run>(m_device.get(), request);
    connect(m_run.get(), &Run::progressChanged, this,
            [this](double progress) { m_progress.setValue(int(100 * progress)); });
    connect(m_run.get(), &Run::actionRequired, this, &Window::ask);
    connect(m_run.get(), &Run::finished, this, &Window::finish);
    m_watch.stop(); // nobody searches while an instrument measures
    m_plate.clear();
    m_status.clear();
    m_run->start();
    showButtons();
}

// The question waits in a window of its own, and the instrument meanwhile; exec() would hold up the
// driver, which has just called this.
void Window::ask(int actionId, const QString &text)
{
    auto *box = new QMessageBox(QMessageBox::Question, windowTitle(), text,
                                QMessageBox::Ok | QMessageBox::Abort, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    m_question = box;
    connect(box, &QMessageBox::finished, m_run.get(), [this, actionId](int answer) {
        if (answer == QMessageBox::Ok)
            m_run->confirmAction(actionId);
        else
            m_run->abortAction(actionId);
    });
    box->open();
}

void Window::finish(const Outcome &outcome)
{
    QString sentence = outcome.sentence;
    if (outcome.isResult()) {
        const auto plate =
            plateFromResult(Device::DF_AbsorbanceMeasurement, outcome.result, &sentence);
        m_plate.setPlainText(plate ? plateText(*plate) : QString());
    }
    m_status.setText((sentence + u' ' + outcome.additionalInfo).trimmed());
    m_progress.reset();
    delete m_question; // a run may end without an answer
    m_run.reset();
    m_device.reset();
    m_watch.start();
    showButtons();
}
