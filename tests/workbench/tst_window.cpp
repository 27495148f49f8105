#include "harness.h"

#include <choices.h>
#include <driverinspection.h>
#include <plateview.h>
#include <resultview.h>
#include <statistics.h>

#include <QtGui/QClipboard>
#include <QtWidgets/QAccessibleWidget>
#include <QtWidgets/QActionGroup>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>

using namespace qelworkbench;
using qel::devices::DeviceInfo;

// An operator's day, with real clicks and keys on a simulated lab.
class TestWindow : public BenchTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void firstMeasurement();
    void comparison();
    void contentIsPainted();
    void byKeyboardAlone_data();
    void byKeyboardAlone();
    void choicesAreRemembered();
    void languages();
    void everythingHasAName();
    void instrumentAndDriversAreExplained();
};

void TestWindow::initTestCase()
{
    startLibrary();
}

void TestWindow::init()
{
    m_bench = std::make_unique<Bench>();
}

void TestWindow::cleanup()
{
    m_bench.reset();
}

void TestWindow::firstMeasurement()
{
    m_bench->setUpOne("absorbance-96", {{"serial", "A-17"}});
    m_bench->open();
    QVERIFY(m_bench->window()->windowTitle().contains("SIMULATED"));
    QTest::mouseClick(m_bench->find<QCheckBox>("wavelengths450"), Qt::LeftButton, {}, {5, 8});
    QTest::keyClicks(m_bench->find<QLineEdit>("name"), "Plate 1");

    // On disk before it is shown.
    bool wasKept = false;
    connect(m_bench->instrument(), &Instrument::kept, this, [&] { wasKept = kept() == 1; });
    start();
    QTRY_VERIFY(!m_bench->instrument()->isBusy());
    QVERIFY(wasKept);
    auto *plate = m_bench->find<PlateView>("plate");
    QVERIFY(plate->isVisible());
    QCOMPARE(plate->picture().values.size(), 96);
    QVERIFY(m_bench->find<QLabel>("statistics")->text().startsWith("All 96 wells"));
    plate->setFocus();
    QTest::keyClick(plate, Qt::Key_Down);
    QVERIFY(m_bench->find<QLabel>("well")->text().startsWith("A1: "));
    // The first column is blank; what is kept stays as it was.
    const QVector<double> measured = plate->picture().values;
    QVector<bool> column(96);
    for (int well = 0; well < 96; well += 12)
        column[well] = true;
    plate->setSelection(column);
    m_bench->find<ResultView>("result")->setContent("blank");
    m_bench->click("blank");
    const double blank = statisticsOf(measured, column, {}).mean;
    QVERIFY(qFuzzyCompare(plate->picture().values[5], measured[5] - blank));
    m_bench->click("copy");
    QCOMPARE(QApplication::clipboard()->text().count('\n'), 9);

    // The next day.
    m_bench->close();
    m_bench->open();
    QTest::keyClick(m_bench->window(), Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(m_bench->find<QLineEdit>("search"), "plate 1");
    auto *history = m_bench->find<QTableView>("history");
    QCOMPARE(history->model()->rowCount(), 1);
    history->selectRow(0);
    QCOMPARE(m_bench->find<PlateView>("plate")->picture().values, measured);
    QCOMPARE(m_bench->find<PlateView>("plate")->picture().contents[0], "Blank");
}

void TestWindow::comparison()
{
    m_bench->setUpOne("absorbance-96");
    m_bench->open();
    for (int run = 1; run <= 2; ++run) {
        start();
        QTRY_COMPARE_WITH_TIMEOUT(kept(), run, patience);
    }
    m_bench->find<QTabWidget>("panes")->setCurrentIndex(1);
    auto *history = m_bench->find<QTableView>("history");
    history->selectRow(0);
    const QVector<double> latest = m_bench->find<PlateView>("plate")->picture().values;
    history->setFocus();
    QTest::keyClick(history, Qt::Key_Down, Qt::ShiftModifier);
    auto *one = m_bench->find<PlateView>("plateA");
    auto *other = m_bench->find<PlateView>("plateB");
    QVERIFY(one->isVisible() && other->isVisible());
    QCOMPARE(other->picture().values, latest);
    QVERIFY(one->picture().values != latest);
    QCOMPARE(one->picture().range->to, other->picture().range->to);
    QVector<bool> wells(96);
    wells[13] = true;
    other->setSelection(wells);
    other->setCurrentWell(13);
    QCOMPARE(one->selection(), wells);
    QCOMPARE(one->currentWell(), 13);
    m_bench->find<QTabWidget>("comparison")->setCurrentIndex(1);
    auto *between = m_bench->find<PlateView>("plateDifference");
    QVERIFY(between->isVisible());
    QCOMPARE(between->picture().values[13],
             other->picture().values[13] - one->picture().values[13]);
    QTest::mouseClick(history->viewport(), Qt::LeftButton, {},
                      history->visualRect(history->model()->index(1, 0)).center());
    QVERIFY(m_bench->find<PlateView>("plate")->isVisible());
}

void TestWindow::contentIsPainted()
{
    m_bench->setUpOne("absorbance-96");
    m_bench->open();
    start();
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, patience);
    auto *plate = m_bench->find<PlateView>("plate");
    const auto drag = [plate](int from, int to) {
        const auto center = [plate](int well) {
            return plate->picture().wellRect(well, plate->rect()).center().toPoint();
        };
        QTest::mousePress(plate, Qt::LeftButton, {}, center(from));
        QMouseEvent move(QEvent::MouseMove, center(to), Qt::NoButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(plate, &move);
        QTest::mouseRelease(plate, Qt::LeftButton, {}, center(to));
    };
    m_bench->find<ResultView>("result")->setContent("blank");
    QVERIFY(m_bench->find<QPushButton>("brush")->isVisible());
    drag(0, 84); // a column
    drag(1, 1);
    QCOMPARE(plate->picture().contents.count("Blank"), 9);
    QVERIFY(!plate->selection().contains(true));
    const auto inHistory = [this] { return m_bench->window()->history()->runs(0)[0].layout; };
    QCOMPARE(inHistory().value("blank").toString(), "A1:A2,B1,C1,D1,E1,F1,G1,H1");
    QTest::keyClick(plate, Qt::Key_Escape);
    QVERIFY(!m_bench->find<QPushButton>("brush")->isVisible());
    drag(5, 17);
    QCOMPARE(plate->picture().contents.count("Blank"), 9);
    QCOMPARE(plate->selection().count(true), 2);
}

void TestWindow::byKeyboardAlone_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::newRow("English") << QLocale(QLocale::English);
    QTest::newRow("German") << QLocale(QLocale::German);
}

// Measured, looked at, found again and compared.
void TestWindow::byKeyboardAlone()
{
    QFETCH(QLocale, locale);
    useLanguage(locale);
    m_bench->setUpOne("absorbance-96");
    m_bench->open();
    QApplication::setActiveWindow(m_bench->window());
    QTRY_VERIFY(QApplication::focusWidget());
    QSet<QWidget *> seen;
    bool hasStarted = false;
    for (int step = 0; step < 60 && !hasStarted; ++step) {
        QWidget *focus = QApplication::focusWidget();
        if (focus->objectName() == "start") {
            QTest::keyClick(focus, Qt::Key_Space);
            hasStarted = true;
        } else {
            QTest::keyClick(focus, Qt::Key_Tab);
        }
        seen.insert(focus);
    }
    QVERIFY(hasStarted);
    QVERIFY(seen.contains(m_bench->find<QCheckBox>("wavelengths450")));
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, patience);
    QTRY_COMPARE(QApplication::focusWidget()->objectName(), "start");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 2, patience);

    QTest::keyClick(m_bench->window(), Qt::Key_F, Qt::ControlModifier);
    for (int step = 0; step < 6 && QApplication::focusWidget()->objectName() != "history"; ++step)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Home, Qt::ControlModifier);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Down, Qt::ShiftModifier);
    QVERIFY(m_bench->find<PlateView>("plateA")->isVisible());
}

void TestWindow::choicesAreRemembered()
{
    const QJsonObject first{{"model", "absorbance-96"}, {"serial", "A-1"}};
    const QJsonObject second{{"model", "combined-384"}, {"serial", "C-2"}};
    m_bench->setUp({first, second});
    m_bench->open();
    QTRY_COMPARE(m_bench->window()->instruments()->rowCount(), 2);
    const auto current = [this] { return m_bench->find<InstrumentList>("instruments")->current(); };
    QCOMPARE(current()->info().serial(), "A-1");
    m_bench->find<InstrumentList>("instruments")
        ->setCurrentIndex(m_bench->window()->instruments()->index(1));
    auto *feature = m_bench->find<QComboBox>("feature");
    QTRY_VERIFY(feature->findText("Luminescence") > 0);
    feature->setCurrentIndex(feature->findText("Luminescence"));
    QCOMPARE(m_bench->find<QLineEdit>("integrationTime")->text(), "100"); // the default
    m_bench->find<QLineEdit>("integrationTime")->setText("40");
    m_bench->find<QLineEdit>("selectedWells")->setText("A1:B2");
    m_bench->click("start");
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, patience);

    m_bench->close();
    m_bench->open();
    QTRY_COMPARE(current()->info().serial(), "C-2");
    QTRY_COMPARE(m_bench->find<QComboBox>("feature")->currentText(), "Luminescence");
    QCOMPARE(m_bench->find<QLineEdit>("integrationTime")->text(), "40");
    QCOMPARE(m_bench->find<QLineEdit>("selectedWells")->text(), "A1:B2");
    // What does not fit any more is left to the defaults.
    m_bench->close();
    choices::remember(DeviceInfo(DeviceInfo::Simulator, "simulator", "", "", "C-2"),
                      "luminescence-measurement", {{"integrationTime", 15}});
    m_bench->open();
    QTRY_COMPARE(m_bench->find<QComboBox>("feature")->currentText(), "Luminescence");
    QCOMPARE(m_bench->find<QLineEdit>("integrationTime")->text(), "100");
}

void TestWindow::languages()
{
    m_bench->setUpOne("luminescence-96");
    m_bench->open();
    QTest::keyClicks(m_bench->find<QLineEdit>("name"), "stays");
    useLanguage(QLocale(QLocale::German));
    QTRY_COMPARE(m_bench->find<QTabWidget>("panes")->tabText(0), "Messen");
    QCOMPARE(m_bench->find<QLineEdit>("name")->text(), "stays");
    QVERIFY(m_bench->find<QLabel>("integrationTimeHint")->text().contains("Millisekunden"));
    QCOMPARE(Instruments::stateText(*m_bench->instrument()), "Bereit");
    useLanguage(QLocale(QLocale::English));
    QTRY_COMPARE(m_bench->find<QTabWidget>("panes")->tabText(0), "Measure");
}

// What a screen reader would call "button" is of no help.
void TestWindow::everythingHasAName()
{
    m_bench->setUpOne("combined-384");
    m_bench->open();
    start();
    QTRY_VERIFY(!m_bench->instrument()->isBusy());
    for (int pane = 0; pane < 3; ++pane) {
        m_bench->find<QTabWidget>("panes")->setCurrentIndex(pane);
        const auto widgets = m_bench->window()->findChildren<QWidget *>();
        for (QWidget *widget : widgets) {
            const bool isReached = widget->isVisible() && widget->focusPolicy() & Qt::TabFocus
                && !widget->focusProxy() && !widget->inherits("QTabBar");
            if (!isReached)
                continue;
            const auto *reader = QAccessible::queryAccessibleInterface(widget);
            const QString what = QStringLiteral("%1 %2").arg(
                QLatin1String(widget->metaObject()->className()), widget->objectName());
            QVERIFY2(reader, qPrintable(what));
            QVERIFY2(!reader->text(QAccessible::Name).isEmpty(), qPrintable(what));
            QVERIFY2(!reader->text(QAccessible::Name).startsWith("qelworkbench-"),
                     qPrintable(what));
        }
    }
}

void TestWindow::instrumentAndDriversAreExplained()
{
    qputenv("ROGUE", "load crash");
    m_bench->setUpOne("absorbance-96");
    m_bench->addPlugins(QStringLiteral(ROGUE_FOLDER));
    m_bench->addPlugins(QStringLiteral(DRIVER_FOLDER));
    m_bench->open();
    m_bench->find<QTabWidget>("panes")->setCurrentIndex(2);
    m_bench->click("firmware");
    QTRY_VERIFY(m_bench->find<QLabel>("identity")->text().contains("Version: 2.4.0"));
    QCOMPARE(kept(), 0);
    const auto findings = [this] {
        return m_bench->find<QPlainTextEdit>("findings")->toPlainText();
    };
    QVERIFY2(findings().contains("rogue.so: can be used"), qPrintable(findings()));
    m_bench->click("tryDrivers");
    QTRY_VERIFY_WITH_TIMEOUT(m_bench->find<QPushButton>("tryDrivers")->isEnabled(), 60000);
    QVERIFY2(findings().contains("rogue.so: cannot be used"), qPrintable(findings()));
    QVERIFY2(findings().contains("simulator.so: can be used (simulator)"), qPrintable(findings()));
    useLanguage(QLocale(QLocale::German));
    QTRY_VERIFY2(findings().contains("lässt sich nicht laden"), qPrintable(findings()));
    qunsetenv("ROGUE");
}

int main(int argc, char *argv[])
{
    if (isLoadTrial(argc, argv))
        return runLoadTrial(argc, argv);
    QApplication application(argc, argv);
    TestWindow test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window.moc"
