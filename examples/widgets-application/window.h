#ifndef WINDOW_H
#define WINDOW_H

#include <qelfrontend/instrumentwatch.h>
#include <qelfrontend/run.h>

#include <QtCore/QPointer>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

#include <memory>

// Lists the instruments as they come and go, measures a plate on the chosen one, shows it.
class Window : public QWidget
{
    Q_OBJECT

public:
    Window();

private:
    void showInstruments();
    void showButtons();
    void measure();
    void ask(int actionId, const QString &text);
    void finish(const qel::frontend::Outcome &outcome);

    qel::frontend::InstrumentWatch m_watch;
    std::unique_ptr<qel::devices::Device> m_device;
    std::unique_ptr<qel::frontend::Run> m_run; // goes before its device

    QPointer<QMessageBox> m_question;
    QComboBox m_instruments;
    QPushButton m_measure{QStringLiteral("Measure at 450 nm")};
    QPushButton m_cancel{QStringLiteral("Cancel")};
    QProgressBar m_progress;
    QPlainTextEdit m_plate;
    QLabel m_status;
};

#endif
