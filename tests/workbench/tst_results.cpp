#include "harness.h"
#include "records.h"

#include <colorscales.h>
#include <exports.h>
#include <platelayout.h>
#include <plateview.h>
#include <resultpictures.h>
#include <statistics.h>

#include <qelfrontend/frontend.h>
#include <qelfrontend/wells.h>

#include <QtCore/QProcess>
#include <QtWidgets/QAccessibleWidget>

using namespace qelworkbench;
using namespace qel::frontend;

// What is shown of a result, and what leaves the window.
class TestResults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void statistics();
    void palette();
    void differences();
    void differencesRefused();
    void sharedColors();
    void exports();
    void spreadsheetHoldsValues();
    void layoutFromCsv();
    void layoutRefused_data();
    void layoutRefused();
    void plateSelection();

private:
    Bench m_bench; // language and settings
};

void TestResults::initTestCase()
{
    registerMetaTypes();
}

void TestResults::statistics()
{
    const QVector<double> values{1, 2, 3, notMeasured, 10};
    Statistics all = statisticsOf(values, {}, 10.0);
    QCOMPARE(all.count, 4);
    QCOMPARE(all.notMeasured, 1);
    QCOMPARE(all.saturated, 1);
    QCOMPARE(all.mean, 4.0);
    QCOMPARE(*all.deviation, std::sqrt(50.0 / 3));
    const Statistics some = statisticsOf(values, {true, true, true, false, false}, 10.0);
    QCOMPARE(some.mean, 2.0);
    QCOMPARE(*some.deviation, 1.0);
    QCOMPARE(*some.variation, 0.5);
    QVERIFY(!statisticsOf(values, {true, false, false, false, false}, {}).deviation);
    QVERIFY(!statisticsOf({-1, 1}, {}, {}).variation);
    QCOMPARE(statisticsOf({1e9 + 4, 1e9 + 7, 1e9 + 13, 1e9 + 16}, {}, {}).deviation,
             std::make_optional(std::sqrt(30.0)));
}

void TestResults::palette()
{
    QCOMPARE(viridis(0).rgb(), QColor("#440154").rgb());
    QCOMPARE(viridis(1).rgb(), QColor("#fde725").rgb());
    QCOMPARE(viridis(7), viridis(1));
    // Brighter with every step, so that it is read in grey, too.
    for (int step = 1; step <= 50; ++step)
        QVERIFY(qGray(viridis(step / 50.0).rgb()) >= qGray(viridis((step - 1) / 50.0).rgb()));
    // Darker to both sides, blue below the middle and red above.
    for (int step = 1; step <= 25; ++step) {
        const QColor below = blueToRed(0.5 - step / 50.0);
        const QColor above = blueToRed(0.5 + step / 50.0);
        QVERIFY(below.blue() > below.red() && above.red() > above.blue());
        QVERIFY(qGray(below.rgb()) < qGray(blueToRed(0.5 - (step - 1) / 50.0).rgb()));
        QVERIFY(qGray(above.rgb()) < qGray(blueToRed(0.5 + (step - 1) / 50.0).rgb()));
    }
}

static PlatePicture picture(int columns, const QVector<double> &values)
{
    PlatePicture picture;
    picture.rows = 1;
    picture.columns = columns;
    picture.values = values;
    picture.unit = QStringLiteral("OD");
    picture.maximum = 4.0;
    return picture;
}

void TestResults::differences()
{
    QString problem;
    const auto between = difference(picture(6, {1, 2, notMeasured, 4, 1, 4}),
                                    picture(6, {3, 1.5, 1, 1, INFINITY, notMeasured}), &problem);
    QVERIFY2(between, qPrintable(problem));
    QCOMPARE(between->values[0], 2.0);
    QCOMPARE(between->values[1], -0.5);
    QVERIFY(std::isnan(between->values[2]) && std::isnan(between->values[5]));
    // As large as the maximum or more on either plate: nobody knows what lies between them.
    QVERIFY(between->isSaturated(between->values[3]) && between->isSaturated(between->values[4]));
    QCOMPARE(between->span().from, -2.0);
    QCOMPARE(between->span().to, 2.0);
    QCOMPARE(between->span().share(0), 0.5);
    QVERIFY(!between->isSaturated(2.0)); // of the detector nothing can be told any more
    const Statistics numbers = statisticsOf(between->values, {}, between->maximum);
    QCOMPARE(numbers.count, 2);
    QCOMPARE(numbers.notMeasured, 2);
    QCOMPARE(numbers.saturated, 2);
}

void TestResults::differencesRefused()
{
    QString problem;
    QVERIFY(!difference(picture(2, {1, 2}), picture(3, {1, 2, 3}), &problem));
    QVERIFY2(problem.contains("2") && problem.contains("3"), qPrintable(problem));
    PlatePicture light = picture(2, {1, 2});
    light.unit = QStringLiteral("counts/s");
    QVERIFY(!difference(picture(2, {1, 2}), light, &problem));
    QVERIFY2(problem.contains("counts/s"), qPrintable(problem));
}

void TestResults::sharedColors()
{
    PlatePicture one = picture(3, {1, 2, 4}); // 4 is saturated
    PlatePicture other = picture(3, {0.5, 1.5, notMeasured});
    PlatePicture empty = picture(1, {notMeasured});
    shareColors(&one, &other);
    QCOMPARE(one.range->from, 0.5);
    QCOMPARE(one.range->to, 2.0);
    QCOMPARE(other.range->share(1.25), 0.5);
    shareColors(&empty, &one);
    QCOMPARE(empty.range->from, 1.0);
    PlatePicture light = picture(1, {7});
    light.unit = QStringLiteral("counts/s");
    shareColors(&light, &other);
    QVERIFY(!light.range);
}

void TestResults::exports()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    const auto result =
        store.read(*store.entry(*store.keep(record(noon), {}, &problem), &problem), &problem);
    PlatePicture picture;
    picture.rows = 2;
    picture.columns = 3;
    picture.values = result->run.plate->reads[0].values;
    picture.unit = "OD";
    picture.maximum = result->run.plate->maximum;
    const auto written = [&](ExportFormat format) {
        const QString path = folder.filePath("export." + suffixOf(format));
        if (!exportTo(path, format, {*result}, picture, &problem))
            return QByteArray();
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QCOMPARE(written(ExportFormat::PlateCsv),
             QByteArray("450 nm (OD),1,2,3\r\nA,0.5,0.25,\r\nB,4,0.3333333333333333,0.125\r\n"));
    QCOMPARE(written(ExportFormat::TidyCsv).count("\r\n"), 7);
    QCOMPARE(QJsonDocument::fromJson(written(ExportFormat::Json)).object(), result->run.json);
    QVERIFY(QImage::fromData(written(ExportFormat::Png)).width() > 900);
    QVERIFY(written(ExportFormat::Svg).contains("</svg>"));
    QCOMPARE(clipboardTable(picture),
             QString("OD\t1\t2\t3\nA\t0.5\t0.25\t\nB\t4\t0.3333333333333333\t0.125\n"));
    QVERIFY(!exportTo("/nowhere/x.csv", ExportFormat::PlateCsv, {*result}, picture, &problem));
    QVERIFY2(problem.contains("/nowhere/x.csv"), qPrintable(problem));
}

void TestResults::spreadsheetHoldsValues()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    auto result =
        store.read(*store.entry(*store.keep(record(noon), {}, &problem), &problem), &problem);
    const QString path = folder.filePath("book.xlsx");
    // What a spreadsheet program sees, by way of the archive that the file is: a line a cell.
    const auto cells = [&] {
        if (!exportTo(path, ExportFormat::Spreadsheet, {*result}, {}, &problem))
            return QByteArrayList();
        QProcess reader;
        reader.start("python3",
                     {"-c", R"py(
import re, sys, zipfile
book = zipfile.ZipFile(sys.argv[1])
texts = re.findall("<t[^>]*>(.*?)</t>", book.read("xl/sharedStrings.xml").decode())
names = re.findall('<sheet name="(.*?)"', book.read("xl/workbook.xml").decode())
for number, name in enumerate(names, 1):
    sheet = book.read(f"xl/worksheets/sheet{number}.xml").decode()
    for cell, rest, value in re.findall('<c r="([A-Z0-9]+)"([^>]*)><v>(.*?)</v>', sheet):
        print(name, cell, texts[int(value)] if 't="s"' in rest else value)
)py",
                      path});
        return reader.waitForFinished() ? reader.readAllStandardOutput().split('\n')
                                        : QByteArrayList();
    };
    const QByteArrayList plain = cells();
    QVERIFY(plain.contains("Values G6 0.3333333333333333"));
    QVERIFY(plain.contains("Plates C3 0.3333333333333333"));
    QVERIFY(plain.contains("Plates B3 4") && !plain.join().contains("Layout"));
    result->entry.layout = {{"blank", "A2"}, {"standard 12.5", "B3"}};
    const QByteArrayList withLayout = cells();
    QVERIFY(withLayout.contains("Layout C2 blank"));
    QVERIFY(withLayout.contains("Layout D3 standard 12.5"));
    QVERIFY(withLayout.contains("Plates C3 0.3333333333333333"));
}

void TestResults::layoutFromCsv()
{
    QString problem;
    const auto layout = PlateLayout::fromCsv(
        "plate,1,2,3\r\nA,blank,Sample,standard 12.5\r\nB,blank,,control\r\n", 2, 3, &problem);
    QVERIFY2(layout, qPrintable(problem));
    QCOMPARE(layout->content(2), "standard 12.5");
    QCOMPARE(layout->content(4), QString());
    QCOMPARE(PlateLayout::fromJson(layout->toJson(), 2, 3).toJson(), layout->toJson());
    QCOMPARE(layout->toJson().value("blank").toString(), "A1,B1");

    // A blank counts only when it is known.
    QCOMPARE(layout->blank({1, 9, 9, 3, 9, 9}, 10.0), std::make_optional(2.0));
    QCOMPARE(layout->blank({1, 9, 9, notMeasured, 9, 9}, 10.0), std::make_optional(1.0));
    QVERIFY(!layout->blank({1, 9, 9, 10, 9, 9}, 10.0));
    QVERIFY(!PlateLayout(2, 3).blank({1, 9, 9, 3, 9, 9}, 10.0));

    QTemporaryDir folder;
    Store store(folder.path());
    const QString file = *store.keep(record(noon), {}, &problem);
    QVERIFY(store.annotate(file, "name", "note", &problem));
    QVERIFY(store.setLayout(file, layout->toJson(), &problem));
    QCOMPARE(store.entry(file, &problem)->layout, layout->toJson());
    QCOMPARE(store.entry(file, &problem)->note, "note");
}

void TestResults::layoutRefused_data()
{
    QTest::addColumn<QByteArray>("csv");
    QTest::addColumn<QString>("place");
    QTest::newRow("nothing") << QByteArray() << "1";
    QTest::newRow("other plate") << QByteArray("p,1,2,3,4\nA,,,,\nB,,,,\n") << "1";
    QTest::newRow("row missing") << QByteArray("p,1,2,3\nA,,,\n") << "3";
    QTest::newRow("rows exchanged") << QByteArray("p,1,2,3\nB,,,\nA,,,\n") << "2";
    QTest::newRow("unknown content") << QByteArray("p,1,2,3\nA,,,\nB,,water,\n") << "B2";
    QTest::newRow("no number") << QByteArray("p,1,2,3\nA,,,standard nan\nB,,,\n") << "A3";
}

void TestResults::layoutRefused()
{
    QFETCH(QByteArray, csv);
    QFETCH(QString, place);
    QString problem;
    QVERIFY(!PlateLayout::fromCsv(csv, 2, 3, &problem));
    QVERIFY2(problem.contains(place), qPrintable(problem));
}

void TestResults::plateSelection()
{
    PlateView view;
    PlatePicture picture;
    picture.rows = 8;
    picture.columns = 12;
    picture.values = QVector<double>(96, 1);
    view.setPicture(picture);
    view.resize(700, 400);
    view.show();
    const auto center = [&](int well) {
        return view.picture().wellRect(well, view.rect()).center().toPoint();
    };
    QTest::mousePress(&view, Qt::LeftButton, {}, center(13));
    // QTest::mouseMove() presses no button.
    QMouseEvent drag(QEvent::MouseMove, center(26), Qt::NoButton, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&view, &drag);
    QTest::mouseRelease(&view, Qt::LeftButton, {}, center(26));
    QCOMPARE(writeWells(view.selection(), 12), "B2:B3,C2:C3");
    QTest::mouseClick(&view, Qt::LeftButton, Qt::ControlModifier, center(0));
    QCOMPARE(view.selection().count(true), 5);
    QTest::mouseClick(&view, Qt::LeftButton, {},
                      center(0)
                          - QPoint(view.picture().wellRect(0, view.rect()).toRect().width(), 0));
    QCOMPARE(writeWells(view.selection(), 12), "A1:A12");
    view.setCurrentWell(0);
    QTest::keyClick(&view, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&view, Qt::Key_Down, Qt::ShiftModifier);
    QCOMPARE(writeWells(view.selection(), 12), "A1:A2,B1:B2");
    QTest::keyClick(&view, Qt::Key_Space);
    QCOMPARE(writeWells(view.selection(), 12), "A1:A2,B1");
    QTest::keyClick(&view, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(view.selection().count(true), 96);
    QTest::keyClick(&view, Qt::Key_Escape);
    QCOMPARE(view.selection().count(true), 0);

    auto *reader = QAccessible::queryAccessibleInterface(&view);
    QCOMPARE(reader->role(), QAccessible::Table);
    QCOMPARE(reader->text(QAccessible::Value), "B2: 1.000");
}

QTEST_MAIN(TestResults)
#include "tst_results.moc"
