#ifndef QELWORKBENCH_MAINWINDOW_H
#define QELWORKBENCH_MAINWINDOW_H

#include "history.h"
#include "instruments.h"
#include "startup.h"
#include "store.h"

#include <QtWidgets/QMainWindow>

class QActionGroup;
class QLabel;
class QMenu;
class QTabWidget;

namespace qelworkbench {

class HistoryPane;
class InstrumentList;
class MeasurePane;
class TrustPane;

/// The window: the instruments beside the panes for measuring, for what was measured, and for what
/// is known of an instrument.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(const CommandLine &line, QWidget *parent = nullptr);
    ~MainWindow() override;

    Instruments *instruments();
    History *history();

protected:
    void changeEvent(QEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void makeMenus();
    void retranslate();
    void showInstrument();
    void showLatest();
    void showCall(const QString &driver);
    void endCall();
    void onKept(const QString &file, Instrument *instrument);
    void chooseFolder();
    void chooseLanguage(QAction *action);
    void say(const QString &sentence, bool isProblem);
    bool mayClose();

    const bool m_isSimulated;
    Store m_store;
    Instruments m_instruments;
    History m_history;
    QHash<Instrument *, QVector<Result>> m_latest; // what each has measured last, with its series
    InstrumentList *m_list;
    QTabWidget *m_tabs;
    MeasurePane *m_measure;
    HistoryPane *m_historyPane;
    TrustPane *m_trust;
    QLabel *m_heldUp;
    QString m_waiting; // what is said during calls into a driver, and what was said before
    QString m_beforeWaiting;
    QMenu *m_fileMenu;
    QMenu *m_viewMenu;
    QMenu *m_languageMenu;
    QActionGroup *m_languages;
    QList<QAction *> m_actions; // in the order of their texts
};

} // namespace qelworkbench

#endif
