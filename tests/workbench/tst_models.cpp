#include "harness.h"
#include "records.h"

#include <history.h>

#include <qelfrontend/frontend.h>

#include <QtCore/QElapsedTimer>

#include <cmath>

using namespace qelworkbench;
using namespace qel::frontend;

// What is kept, and found again.
class TestModels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void storeReadsBack();
    void storeRefusesDamage();
    void storeFailsWithSentence();
    void storeCachesAndForgets();
    void historyGroupsSeries();
    void historyFilter_data();
    void historyFilter();
    void longHistory();

private:
    Bench m_bench; // language and settings
};

void TestModels::initTestCase()
{
    registerMetaTypes();
}

void TestModels::storeReadsBack()
{
    QTemporaryDir folder;
    Store store(folder.filePath("deep/runs"));
    QString problem;
    const auto first = store.keep(record(noon), {}, &problem);
    QVERIFY2(first, qPrintable(problem));
    const auto second = store.keep(record(noon), {"s1", 2, 3}, &problem);
    QVERIFY(second && *second != *first);
    QVERIFY(store.annotate(*first, "Plate 1", "Ünïcode", &problem));

    const auto entries = Store(store.folder()).entries();
    QCOMPARE(entries.size(), 2);
    const Entry &entry = entries[0].file == *first ? entries[0] : entries[1];
    QCOMPARE(entry.name, "Plate 1");
    QCOMPARE(entry.note, "Ünïcode");
    const auto result = store.read(entry, &problem);
    QVERIFY2(result, qPrintable(problem));
    QCOMPARE(result->run.plate->reads[0].values[4], 1.0 / 3);
    QVERIFY(std::isnan(result->run.plate->reads[0].values[2]));
    QCOMPARE(*result->run.plate->maximum, 4.0);
    QCOMPARE(result->run.record.device, record(noon).device);
    QCOMPARE(result->entry.startedAt, noon);
    QCOMPARE(store.entry(*second, &problem)->number, 2);
}

void TestModels::storeRefusesDamage()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    const QString file = *store.keep(record(noon), {}, &problem);
    const Entry entry = *store.entry(file, &problem);
    QFile damaged(folder.filePath(file));
    QVERIFY(damaged.resize(damaged.size() / 2));
    QVERIFY(!store.read(entry, &problem));
    QVERIFY2(problem.contains(file), qPrintable(problem));
    QVERIFY(store.entries().isEmpty());

    // Notes that cannot be read are not written over.
    QFile notes(folder.filePath("notes.qelworkbench"));
    QVERIFY(notes.open(QIODevice::WriteOnly) && notes.write("{") == 1);
    notes.close();
    QVERIFY(!store.annotate(file, "x", "", &problem));
    QCOMPARE(notes.size(), 1);
}

void TestModels::storeFailsWithSentence()
{
    QTemporaryDir folder;
    QFile file(folder.filePath("runs"));
    QVERIFY(file.open(QIODevice::WriteOnly)); // a file where the folder should be
    QString problem;
    QVERIFY(!Store(file.fileName()).keep(record(noon), {}, &problem));
    QVERIFY2(problem.contains("runs"), qPrintable(problem));
}

void TestModels::storeCachesAndForgets()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    for (int i = 0; i < 3; ++i)
        store.keep(record(noon.addSecs(i)), {}, &problem);
    QCOMPARE(store.entries().size(), 3);
    const auto cached = store.entries();
    QCOMPARE(cached.size(), 3);
    QCOMPARE(cached[0].startedAt, noon.addSecs(2));
    QVERIFY(QFile::remove(folder.filePath(cached[1].file)));
    QCOMPARE(store.entries().size(), 2);
    store.keep(record(noon.addSecs(9)), {}, &problem);
    QCOMPARE(store.entries()[0].startedAt, noon.addSecs(9));
    QFile cache(folder.filePath("cache.qelworkbench"));
    QVERIFY(cache.resize(cache.size() - 7));
    QCOMPARE(store.entries().size(), 3);
}

void TestModels::historyGroupsSeries()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    store.keep(record(noon), {}, &problem);
    for (int number = 1; number <= 3; ++number)
        store.keep(record(noon.addSecs(60 * number)), {"series", number, 4}, &problem);
    History history(&store);
    history.load();
    QCOMPARE(history.rowCount(), 2);
    QCOMPARE(history.runs(0).size(), 3);
    history.add(*store.keep(record(noon.addSecs(300)), {"series", 4, 4}, &problem));
    QCOMPARE(history.rowCount(), 2);
    const auto results = history.read(0, &problem);
    QCOMPARE(results.size(), 4);
    QCOMPARE(results[3].entry.number, 4);
    history.add(*store.keep(record(noon.addSecs(600)), {}, &problem));
    QCOMPARE(history.runs(0).size(), 1);
    QVERIFY(history.setData(history.index(1, History::Note), "kinetics", Qt::EditRole));
    History again(&store);
    again.load();
    QCOMPARE(again.index(1, History::Note).data(), QVariant("kinetics"));
}

void TestModels::historyFilter_data()
{
    QTest::addColumn<QString>("words");
    QTest::addColumn<QDate>("first");
    QTest::addColumn<QDate>("last");
    QTest::addColumn<int>("found");
    const QDate day = noon.toLocalTime().date();
    QTest::newRow("all") << QString() << QDate() << QDate() << 3;
    QTest::newRow("name, any case") << "elisa" << QDate() << QDate() << 1;
    QTest::newRow("note and serial") << "B-2 blank" << QDate() << QDate() << 1;
    QTest::newRow("words of two runs") << "ELISA B-2" << QDate() << QDate() << 0;
    QTest::newRow("a day") << QString() << day << day << 2;
    QTest::newRow("from a day on") << QString() << day.addDays(1) << QDate() << 1;
    QTest::newRow("date as text") << "2026-03-02" << QDate() << QDate() << 1;
}

void TestModels::historyFilter()
{
    QFETCH(QString, words);
    QFETCH(QDate, first);
    QFETCH(QDate, last);
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    store.annotate(*store.keep(record(noon), {}, &problem), "ELISA 4", "", &problem);
    store.annotate(*store.keep(record(noon.addSecs(9), "B-2"), {}, &problem), "", "with blanks",
                   &problem);
    store.keep(record(noon.addDays(1)), {}, &problem);
    History history(&store);
    history.load();
    HistoryFilter filter;
    filter.setSourceModel(&history);
    filter.setWords(words);
    filter.setDays(first, last);
    QTEST(filter.rowCount(), "found");
}

// With the cache, ten thousand runs are listed without opening one of them.
void TestModels::longHistory()
{
    QTemporaryDir folder;
    Store store(folder.path());
    QString problem;
    QFile first(folder.filePath(*store.keep(record(noon), {}, &problem)));
    QVERIFY(first.open(QIODevice::ReadOnly));
    const QByteArray document = first.readAll();
    constexpr int runs = 10000;
    for (int run = 1; run < runs; ++run) {
        QFile file(folder.filePath(QStringLiteral("run %1.json").arg(run)));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write(document) == document.size());
    }
    QElapsedTimer clock;
    const auto load = [&] {
        History history(&store);
        clock.start();
        history.load();
        return qMakePair(history.rowCount(), clock.nsecsElapsed() / 1000);
    };
    const auto uncached = load();
    const auto cached = load();
    QCOMPARE(uncached.first, runs);
    QCOMPARE(cached.first, runs);
    qInfo("%d runs: %lld us without the cache, %lld us with it", runs, uncached.second,
          cached.second);
    QVERIFY2(cached.second * 2 < uncached.second, "the cache is not used");
}

QTEST_MAIN(TestModels)
#include "tst_models.moc"
