// Takes the pictures of the documentation: pictures FOLDER LANGUAGE [WIDTH HEIGHT]

#include "harness.h"

#include <log.h>
#include <plateview.h>
#include <resultview.h>
#include <roomystyle.h>

#include <qelfrontend/startup.h>

#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QSpinBox>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QTabWidget>
#include <QtWidgets/QTableView>

using namespace qelworkbench;

namespace {

class Camera
{
public:
    Camera(const Bench &bench, QString folder, QString language)
        : m_bench(bench)
        , m_folder(std::move(folder))
        , m_language(std::move(language))
    { }

    void take(const char *name) const
    {
        // Which names a folder of this machine.
        m_bench.window()->statusBar()->clearMessage();
        QTest::qWait(100);
        const QString path = QStringLiteral("%1/workbench-%2-%3.png")
                                 .arg(m_folder, QString::fromLatin1(name), m_language);
        if (!m_bench.window()->grab().save(path))
            qFatal("cannot write %s", qPrintable(path));
    }

private:
    const Bench &m_bench;
    const QString m_folder;
    const QString m_language;
};

QJsonArray laboratory()
{
    const QJsonObject elisa{
        {"model", "absorbance-96"},
        {"name", "ELISA reader"},
        {"serial", "A-17"},
        {"location", "bench-1"},
        {"seed", 7},
        {"plate", QJsonObject{{"layout", "elisa"}, {"dye", "tmb"}, {"concentration", 110}}}};
    const QJsonObject light{
        {"model", "luminescence-96"},
        {"serial", "L-3"},
        {"location", "bench-2"},
        {"plate", QJsonObject{{"layout", "dilution-series"}, {"brightness", 2000000}}}};
    const QJsonObject ask{{"at", "execute"},
                          {"feature", "absorbance-measurement"},
                          {"do", "ask"},
                          {"text", "Close the lid, then go on."}};
    const QJsonObject dense{
        {"model", "combined-384"},
        {"serial", "C-384"},
        {"location", "bench-3"},
        {"plate", QJsonObject{{"layout", "edge-effect"}, {"dye", "crystal-violet"}}},
        {"faults", QJsonArray{ask}}};
    return {elisa, light, dense};
}

void selectInstrument(const Bench &bench, int row)
{
    auto *list = bench.find<InstrumentList>("instruments");
    list->setCurrentIndex(list->model()->index(row, 0));
    QTRY_VERIFY_WITH_TIMEOUT(bench.find<QPushButton>("start")->isEnabled(), 20000);
}

void measure(const Bench &bench, const QString &name, int count = 1)
{
    bench.find<QLineEdit>("name")->setText(name);
    bench.find<QSpinBox>("count")->setValue(count);
    bench.find<QDoubleSpinBox>("interval")->setValue(0.3);
    bench.click("start");
    QTRY_VERIFY_WITH_TIMEOUT(!bench.window()->instruments()->isAnyBusy(), 60000);
}

void takeAll(Bench &bench, const QString &folder, const QString &language, QSize size)
{
    const Camera camera(bench, folder, language);
    bench.open();
    bench.window()->resize(size);
    QTRY_COMPARE_WITH_TIMEOUT(bench.window()->instruments()->rowCount(), 3, 20000);
    bench.find<QCheckBox>("wavelengths450")->setChecked(true);
    measure(bench, QStringLiteral("ELISA 16"));
    measure(bench, QStringLiteral("ELISA 17"));
    auto *plate = bench.find<PlateView>("plate");
    QVector<bool> blanks(96);
    blanks[84] = blanks[85] = true;
    plate->setSelection(blanks);
    bench.find<ResultView>("result")->setContent(QStringLiteral("blank"));
    plate->setSelection(QVector<bool>(96));
    plate->setCurrentWell(29);
    camera.take("result");

    selectInstrument(bench, 1);
    bench.find<QLineEdit>("integrationTime")->setText(QStringLiteral("20"));
    measure(bench, QStringLiteral("Kinetics 4"), 12);
    QVector<bool> wells(96);
    for (int well = 0; well < 8; ++well)
        wells[well] = true;
    plate = bench.find<PlateView>("plate");
    plate->setSelection(wells);
    auto *tabs = bench.window()->findChildren<QTabWidget *>().constLast();
    for (auto *one : bench.window()->findChildren<QTabWidget *>()) {
        if (one->isVisible() && one->objectName() != QLatin1String("panes"))
            tabs = one;
    }
    tabs->setCurrentIndex(2);
    camera.take("curves");
    tabs->setCurrentIndex(0);

    selectInstrument(bench, 2);
    bench.find<QCheckBox>("wavelengths595")->setChecked(true);
    bench.find<QLineEdit>("name")->setText(QStringLiteral("Edge test"));
    bench.click("start");
    QTRY_VERIFY_WITH_TIMEOUT(!bench.instrument(2)->action().isEmpty(), 20000);
    camera.take("action");
    bench.click("confirm");
    QTRY_VERIFY_WITH_TIMEOUT(!bench.window()->instruments()->isAnyBusy(), 60000);
    camera.take("dense");

    auto *panes = bench.find<QTabWidget>("panes");
    panes->setCurrentIndex(1);
    auto *history = bench.find<QTableView>("history");
    history->setCurrentIndex(history->model()->index(2, 0));
    camera.take("history");
    history->selectionModel()->select(history->model()->index(3, 0),
                                      QItemSelectionModel::Select | QItemSelectionModel::Rows);
    camera.take("side-by-side");
    bench.find<QTabWidget>("comparison")->setCurrentIndex(1);
    camera.take("difference");
    panes->setCurrentIndex(0);

    QPalette dark(QColor(0x35, 0x35, 0x35), QColor(0x2a, 0x2a, 0x2a));
    dark.setColor(QPalette::Base, QColor(0x23, 0x23, 0x23));
    dark.setColor(QPalette::AlternateBase, QColor(0x2c, 0x2c, 0x2c));
    dark.setColor(QPalette::Highlight, QColor(0x2a, 0x82, 0xda));
    QApplication::setPalette(dark);
    selectInstrument(bench, 0);
    camera.take("dark");
}

} // namespace

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 3 && arguments.size() != 5)
        qFatal("usage: pictures FOLDER LANGUAGE [WIDTH HEIGHT]");
    const QSize size = arguments.size() == 5 ? QSize(arguments[3].toInt(), arguments[4].toInt())
                                             : QSize(1200, 780);
    QApplication::setStyle(new RoomyStyle(QStringLiteral("Fusion")));
    Bench bench;
    bench.setUp(laboratory(), 0.02);
    useLanguage(QLocale(arguments[2]));
    Log::instance();
    qel::frontend::startLibrary({QStringLiteral(DRIVER_FOLDER)});
    takeAll(bench, arguments[1], arguments[2], size);
    return 0;
}
