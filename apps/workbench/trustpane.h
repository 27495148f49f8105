#ifndef QELWORKBENCH_TRUSTPANE_H
#define QELWORKBENCH_TRUSTPANE_H

#include "driverinspection.h"
#include "instruments.h"

#include <QtCore/QPointer>
#include <QtWidgets/QWidget>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace qelworkbench {

/// Everything that is known of the instrument and of the drivers on this computer, the messages of
/// the library, and all of it as one file for whoever is asked for help.
class TrustPane : public QWidget
{
    Q_OBJECT

public:
    /// @param pluginFolders searched for drivers in addition to the library's own
    TrustPane(const Instruments *instruments, const QStringList &pluginFolders,
              QWidget *parent = nullptr);

    void setInstrument(Instrument *instrument);
    /// All that the pane shows, as plain text.
    QString report() const;

Q_SIGNALS:
    void said(const QString &sentence, bool isProblem);

protected:
    void changeEvent(QEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    void retranslate();
    void tryDrivers();
    void showDrivers();
    void showInstrument();
    void saveReport();
    QStringList instrumentLines() const;

    const Instruments *m_instruments;
    QPointer<Instrument> m_instrument;
    DriverInspection m_drivers;
    QLabel *m_instrumentTitle;
    QLabel *m_identity;
    QPushButton *m_firmware;
    QLabel *m_driversTitle;
    QPlainTextEdit *m_findings;
    QLabel *m_logTitle;
    QPlainTextEdit *m_log;
    QPushButton *m_inspect;
    QPushButton *m_try;
    QPushButton *m_save;
};

} // namespace qelworkbench

#endif
