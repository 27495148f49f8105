#include "mainwindow.h"

#include "historypane.h"
#include "instrumentlist.h"
#include "measurepane.h"
#include "resultview.h"
#include "text.h"
#include "trustpane.h"

#include <QtCore/QDir>
#include <QtCore/QSettings>
#include <QtCore/QStandardPaths>
#include <QtCore/QTimer>
#include <QtGui/QCloseEvent>
#include <QtGui/QIcon>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QSplitter>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTabWidget>

namespace qelworkbench {

namespace {

const char *const actionTexts[] = {
    "qelworkbench-action-folder", "qelworkbench-action-quit",    "qelworkbench-tab-measure",
    "qelworkbench-tab-history",   "qelworkbench-tab-instrument", "qelworkbench-action-find",
};

// Runs on simulated instruments are kept apart, so that nobody takes one for a measurement.
QString folderFor(const CommandLine &line)
{
    if (!line.folder.isEmpty())
        return line.folder;
    if (!line.scenario.isEmpty())
        return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)
            + QStringLiteral("/simulated");
    const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QSettings()
        .value(QStringLiteral("folder"), documents + QStringLiteral("/Plate reader runs"))
        .toString();
}

} // namespace

MainWindow::MainWindow(const CommandLine &line, QWidget *parent)
    : QMainWindow(parent)
    , m_isSimulated(!line.scenario.isEmpty())
    , m_store(folderFor(line))
    , m_instruments(&m_store)
    , m_history(&m_store)
    , m_list(new InstrumentList(&m_instruments))
    , m_tabs(new QTabWidget)
    , m_measure(new MeasurePane)
    , m_historyPane(new HistoryPane(&m_history))
    , m_trust(new TrustPane(&m_instruments, line.plugins))
    , m_heldUp(new QLabel)
{
    setWindowIcon(QIcon(QStringLiteral(":/qel/workbench/qelworkbench.svg")));
    m_tabs->setObjectName(QStringLiteral("panes"));
    m_tabs->addTab(m_measure, QString());
    m_tabs->addTab(m_historyPane, QString());
    m_tabs->addTab(m_trust, QString());
    auto *splitter = new QSplitter(Qt::Horizontal);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(8);
    splitter->addWidget(m_list);
    splitter->addWidget(m_tabs);
    splitter->setStretchFactor(1, 1);
    splitter->setSizes({270, 930});
    splitter->setContentsMargins(6, 6, 6, 0);
    setCentralWidget(splitter);
    statusBar()->addPermanentWidget(m_heldUp);
    m_heldUp->setObjectName(QStringLiteral("heldUp"));
    makeMenus();

    connect(m_list, &InstrumentList::currentInstrumentChanged, this, &MainWindow::showInstrument);
    connect(&m_instruments, &Instruments::kept, this, &MainWindow::onKept);
    connect(&m_instruments, &Instruments::heldUp, this,
            [this](const QString &driver, qint64 milliseconds) {
                m_heldUp->setText(
                    driver.isEmpty()
                        ? QString()
                        : text("qelworkbench-held-up", driver,
                               QLocale().toString(double(milliseconds) / 1000, 'f', 1)));
            });
    connect(&m_instruments, &Instruments::calling, this, &MainWindow::showCall);
    connect(m_measure, &MeasurePane::folderWanted, this, &MainWindow::chooseFolder);
    connect(m_historyPane, &HistoryPane::folderWanted, this, &MainWindow::chooseFolder);
    connect(m_measure->resultView(), &ResultView::said, this, &MainWindow::say);
    for (ResultView *view : {m_measure->resultView(), m_historyPane->resultView()})
        connect(view, &ResultView::layoutChanged, &m_history, &History::setLayout);
    connect(m_measure->resultView(), &ResultView::layoutChanged, this,
            [this] { m_latest[m_list->current()] = m_measure->resultView()->results(); });
    connect(m_historyPane, &HistoryPane::said, this, &MainWindow::say);
    connect(m_trust, &TrustPane::said, this, &MainWindow::say);

    retranslate();
    resize(1200, 800);
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("geometry")).toByteArray());
    m_history.load();
    // Once the window stands, so that it can say whom it waits for.
    QTimer::singleShot(100, &m_instruments, &Instruments::watch);
}

MainWindow::~MainWindow()
{
    m_instruments.disconnect(this);
}

Instruments *MainWindow::instruments()
{
    return &m_instruments;
}

History *MainWindow::history()
{
    return &m_history;
}

void MainWindow::makeMenus()
{
    m_fileMenu = menuBar()->addMenu(QString());
    m_viewMenu = menuBar()->addMenu(QString());
    m_languageMenu = menuBar()->addMenu(QString());
    const auto add = [this](QMenu *menu, const QKeySequence &keys, auto what) {
        QAction *action = menu->addAction(QString());
        action->setShortcut(keys);
        connect(action, &QAction::triggered, this, what);
        m_actions.append(action);
    };
    add(m_fileMenu, {}, [this] { chooseFolder(); });
    add(m_fileMenu, QKeySequence::Quit, [this] { close(); });
    for (int pane = 0; pane < 3; ++pane)
        add(m_viewMenu, Qt::CTRL + Qt::Key_1 + pane,
            [this, pane] { m_tabs->setCurrentIndex(pane); });
    add(m_viewMenu, QKeySequence::Find, [this] {
        m_tabs->setCurrentWidget(m_historyPane);
        m_historyPane->focusSearch();
    });
    m_languages = new QActionGroup(this);
    for (const char *language : {"de", "en"}) {
        // Each language in its own words, so that whoever is lost finds the way back.
        const QLocale locale(QString::fromLatin1(language));
        QAction *action = m_languageMenu->addAction(locale.language() == QLocale::German
                                                        ? QStringLiteral("Deutsch")
                                                        : QStringLiteral("English"));
        action->setData(QString::fromLatin1(language));
        action->setCheckable(true);
        action->setChecked(locale.language() == QLocale().language());
        m_languages->addAction(action);
    }
    connect(m_languages, &QActionGroup::triggered, this, &MainWindow::chooseLanguage);
}

void MainWindow::retranslate()
{
    setWindowTitle(text(m_isSimulated ? "qelworkbench-title-simulated" : "qelworkbench-title"));
    m_tabs->setTabText(0, text("qelworkbench-tab-measure"));
    m_tabs->setTabText(1, text("qelworkbench-tab-history"));
    m_tabs->setTabText(2, text("qelworkbench-tab-instrument"));
    m_fileMenu->setTitle(text("qelworkbench-menu-file"));
    m_viewMenu->setTitle(text("qelworkbench-menu-view"));
    m_languageMenu->setTitle(text("qelworkbench-menu-language"));
    for (int i = 0; i < m_actions.size(); ++i)
        m_actions[i]->setText(text(actionTexts[i]));
}

void MainWindow::changeEvent(QEvent *event)
{
    if (event->type() == QEvent::LanguageChange)
        retranslate();
    QMainWindow::changeEvent(event);
}

void MainWindow::chooseLanguage(QAction *action)
{
    useLanguage(QLocale(action->data().toString()));
    QSettings().setValue(QStringLiteral("language"), action->data());
}

void MainWindow::showInstrument()
{
    Instrument *instrument = m_list->current();
    m_measure->setInstrument(instrument);
    m_trust->setInstrument(instrument);
    showLatest();
}

void MainWindow::showLatest()
{
    m_measure->setResults(m_latest.value(m_list->current()));
}

// Drawn at once: there is no telling how long the call takes, and nothing is drawn while it lasts.
// The bar's own message, since a widget would first have to be laid out.
void MainWindow::showCall(const QString &driver)
{
    const QString waiting = text("qelworkbench-waiting", driver);
    if (statusBar()->currentMessage() != m_waiting || m_waiting.isEmpty())
        m_beforeWaiting = statusBar()->currentMessage();
    m_waiting = waiting;
    statusBar()->showMessage(waiting);
    statusBar()->repaint();
    QTimer::singleShot(0, this, &MainWindow::endCall);
}

void MainWindow::endCall()
{
    if (m_instruments.isAnyStopping()) {
        QTimer::singleShot(50, this, &MainWindow::endCall);
        return;
    }
    // Unless something else has been said meanwhile.
    if (!m_waiting.isEmpty() && statusBar()->currentMessage() == m_waiting)
        statusBar()->showMessage(m_beforeWaiting, 10000);
    m_waiting.clear();
}

void MainWindow::onKept(const QString &file, Instrument *instrument)
{
    m_history.add(file);
    QString problem;
    const auto entry = m_store.entry(file, &problem);
    const auto result = entry ? m_store.read(*entry, &problem) : std::nullopt;
    if (!result) {
        say(sentence(problem), true);
        return;
    }
    QVector<Result> &latest = m_latest[instrument];
    const bool goesOn = !latest.isEmpty() && !result->entry.series.isEmpty()
        && latest.constLast().entry.series == result->entry.series;
    if (!goesOn)
        latest.clear();
    latest.append(*result);
    if (instrument == m_list->current())
        showLatest();
    say(text("qelworkbench-kept", QDir::toNativeSeparators(m_store.folder())), false);
}

void MainWindow::chooseFolder()
{
    const QString folder = QFileDialog::getExistingDirectory(
        this, text("qelworkbench-action-folder"), m_store.folder());
    if (folder.isEmpty())
        return;
    m_store = Store(folder);
    if (!m_isSimulated)
        QSettings().setValue(QStringLiteral("folder"), folder);
    m_history.load();
    for (int row = 0; row < m_instruments.rowCount(); ++row) {
        if (m_instruments.at(row)->unkeptCount() > 0)
            m_instruments.at(row)->keepAgain();
    }
}

void MainWindow::say(const QString &sentence, bool isProblem)
{
    // Problems stay until something else is said.
    statusBar()->showMessage(sentence, isProblem ? 0 : 10000);
    if (isProblem)
        QMessageBox::warning(this, windowTitle(), sentence);
}

bool MainWindow::mayClose()
{
    if (!m_instruments.isAnyBusy() && m_instruments.unkeptCount() == 0)
        return true;
    const bool isUnkept = m_instruments.unkeptCount() > 0;
    QMessageBox question(
        QMessageBox::Question, windowTitle(),
        isUnkept ? text("qelworkbench-close-unkept", QString::number(m_instruments.unkeptCount()))
                 : text("qelworkbench-close-busy"),
        QMessageBox::NoButton, this);
    QPushButton *stay =
        question.addButton(text("qelworkbench-close-stay"), QMessageBox::RejectRole);
    const QPushButton *leave =
        question.addButton(text("qelworkbench-close-anyway"), QMessageBox::DestructiveRole);
    question.setDefaultButton(stay);
    question.setEscapeButton(stay);
    question.exec();
    return question.clickedButton() == leave;
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!mayClose()) {
        event->ignore();
        return;
    }
    QSettings().setValue(QStringLiteral("geometry"), saveGeometry());
    event->accept();
}

} // namespace qelworkbench
