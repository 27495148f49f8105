#include "checker.h"
#include "report.h"
#include "soak.h"
#include "worker.h"

#include <qelisolation/childprocess.h>

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QMutex>
#include <QtCore/QSet>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTemporaryFile>
#include <QtCore/QThreadPool>
#include <QtCore/QXmlStreamReader>
#include <QtTest/QtTest>

#include <algorithm>
#include <cstdio>

using namespace qel::conformance;

// A driver that works is through in a few milliseconds.
static Limits shortLimits()
{
    Limits limits;
    limits.call = 200;
    limits.open = 500;
    limits.run = 500;
    limits.quiet = 20;
    limits.late = 40;
    limits.silent = 4000;
    return limits;
}

static Request requestFor(const QString &plugin)
{
    Request request;
    request.fileName = QStringLiteral(MUTANTS "/%1.so").arg(plugin);
    request.isUnsafe = true;
    request.answers = Answers::Confirm;
    request.limits = shortLimits();
    // The hands at the bench of the good driver.
    const QStringList guided{QStringLiteral("good"), QStringLiteral("14"), QStringLiteral("0-")};
    request.isGuided = std::any_of(guided.cbegin(), guided.cend(), [&](const QString &beginning) {
        return plugin.startsWith(beginning);
    });
    request.ask = [plugin](const QString &sentence) {
        const bool isPlate = sentence.contains(QStringLiteral("plate"));
        QFile done(QStringLiteral("%1/%2.%3")
                       .arg(qEnvironmentVariable("GOOD_BENCH"), plugin,
                            isPlate ? QStringLiteral("plate") : QStringLiteral("unplug")));
        const bool undoes = sentence.startsWith(QStringLiteral("Take"))
            || sentence.startsWith(QStringLiteral("Put the plug"));
        return undoes ? !done.exists() || done.remove() : done.open(QIODevice::WriteOnly);
    };
    return request;
}

// The rule a mutant breaks stands in its name. What is good in an unusual way has the number 0.
static QVector<int> rulesOf(const QString &mutant)
{
    const int number = mutant.section(QLatin1Char('-'), 0, 0).toInt();
    return number == 0 ? QVector<int>() : QVector<int>{number};
}

static QVector<int> brokenRules(const Report &report)
{
    QVector<int> numbers;
    for (const Result &result : report.results) {
        if (result.judgement == Judgement::Failed || result.judgement == Judgement::Warning)
            numbers += result.rule->number;
    }
    return numbers;
}

static QString describe(const Report &report)
{
    QString text = report.error;
    for (const Result &result : report.results) {
        if (result.judgement == Judgement::Failed || result.judgement == Judgement::Warning)
            text += toText(result, nullptr);
    }
    return text;
}

static Judgement judgementOf(const Report &report, int rule)
{
    const auto result = std::find_if(report.results.cbegin(), report.results.cend(),
                                     [rule](const Result &r) { return r.rule->number == rule; });
    return result == report.results.cend() ? Judgement::NotRun : result->judgement;
}

class tst_Conformance : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void mutant_data();
    void mutant();
    void everyRuleHasAMutant();
    void goodDriver_data();
    void goodDriver();
    void simulator_data();
    void simulator();
    void selectedRules();
    void wrongSelection_data();
    void wrongSelection();
    void crashAndHangAreNamed_data();
    void crashAndHangAreNamed();
    void closesWhenAbandoned();
    void soakFindsTheShortestSequence();
    void formats();
    void pageIsUpToDate();

private:
    QMap<QString, Report> m_reports;
    QTemporaryDir m_bench;
};

// Checking is mostly waiting, so the mutants go side by side.
void tst_Conformance::initTestCase()
{
    QStringList names;
    const auto files = QDir(QStringLiteral(MUTANTS)).entryInfoList({QStringLiteral("*.so")});
    for (const QFileInfo &file : files)
        names += file.completeBaseName();
    QVERIFY(names.contains(QStringLiteral("good")));

    QVERIFY(m_bench.isValid());
    qputenv("GOOD_BENCH", m_bench.path().toLocal8Bit());
    QMutex mutex;
    QThreadPool pool;
    pool.setMaxThreadCount(24);
    for (const QString &name : qAsConst(names)) {
        pool.start(QRunnable::create([this, name, &mutex] {
            const Report report = Checker(requestFor(name)).run();
            const QMutexLocker locker(&mutex);
            m_reports.insert(name, report);
        }));
    }
    pool.waitForDone();

    // On a loaded machine a process stalls for longer than the short limits last, so a few that
    // look unexpected are judged once more, alone and with more patience.
    constexpr int few = 8;
    QStringList unexpected;
    for (auto it = m_reports.cbegin(); it != m_reports.cend(); ++it) {
        if (it.key().at(0).isDigit() && brokenRules(it.value()) != rulesOf(it.key()))
            unexpected += it.key();
    }
    if (unexpected.size() > few)
        return;
    for (const QString &name : qAsConst(unexpected)) {
        qInfo("%s is judged again", qPrintable(name));
        for (const char *done : {".plate", ".unplug"}) // the bench as it was at first
            QFile::remove(m_bench.filePath(name + QLatin1String(done)));
        Request request = requestFor(name);
        request.limits.open = request.limits.run = 3000;
        request.limits.quiet = request.limits.late = Limits().quiet;
        m_reports.insert(name, Checker(request).run());
    }
}

void tst_Conformance::mutant_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = m_reports.keys();
    for (const QString &name : names) {
        if (name.at(0).isDigit())
            QTest::newRow(qPrintable(name)) << name;
    }
}

void tst_Conformance::mutant()
{
    QFETCH(QString, name);
    const Report report = m_reports.value(name);
    const QVector<int> broken = brokenRules(report);
    const QVector<int> expected = rulesOf(name);
    // Large lists of signals are cut, the numbers come first.
    QString numbers;
    QDebug(&numbers) << broken;
    QVERIFY2(broken == expected, qPrintable(numbers + describe(report)));
    QVERIFY2(!expected.isEmpty() || !report.isIncomplete(), qPrintable(summary(report)));
}

void tst_Conformance::everyRuleHasAMutant()
{
    QSet<int> caught;
    for (auto it = m_reports.cbegin(); it != m_reports.cend(); ++it)
        caught += it.key().section(QLatin1Char('-'), 0, 0).toInt();
    for (const Rule &rule : allRules())
        QVERIFY2(caught.contains(rule.number), qPrintable(QString::number(rule.number)));
}

void tst_Conformance::goodDriver_data()
{
    QTest::addColumn<bool>("isUnsafe");
    QTest::newRow("safe") << false;
    QTest::newRow("unsafe") << true;
}

void tst_Conformance::goodDriver()
{
    QFETCH(bool, isUnsafe);
    Request request = requestFor(QStringLiteral("good"));
    request.isUnsafe = request.isGuided = isUnsafe;
    const Report report =
        isUnsafe ? m_reports.value(QStringLiteral("good")) : Checker(request).run();
    QVERIFY2(describe(report).isEmpty(), qPrintable(describe(report)));
    QCOMPARE(report.results.size(), allRules().size());
    for (const Result &result : report.results) {
        const bool isTried = isUnsafe || !(result.rule->isUnsafe || result.rule->needsPerson);
        QVERIFY2((result.judgement == Judgement::Passed) == isTried,
                 qPrintable(toText(result, nullptr)));
    }
}

void tst_Conformance::simulator_data()
{
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QVector<int>>("rules");
    QTest::addColumn<QVector<int>>("broken");
    const auto faultOf = [](const char *feature, const char *action) {
        return QByteArray(R"({"at": "execute", "feature": ")") + feature + R"(", "do": ")" + action
            + R"("})";
    };
    QTest::newRow("none") << QByteArray() << QVector<int>() << QVector<int>();
    QTest::newRow("stalls while opening")
        << QByteArray(R"({"at": "open", "do": "stall"})") << QVector<int>{401} << QVector<int>{401};
    QTest::newRow("refuses to open")
        << QByteArray(R"({"at": "open", "do": "refuse"})") << QVector<int>{401} << QVector<int>();
    QTest::newRow("drops the ending") << faultOf("reference-number", "drop-ending")
                                      << QVector<int>{601, 604} << QVector<int>{601};
    QTest::newRow("ends twice") << faultOf("orientation", "double-ending")
                                << QVector<int>{601, 602, 604} << QVector<int>{601};
    QTest::newRow("result of another type")
        << faultOf("firmware-info", "wrong-type") << QVector<int>{601, 604} << QVector<int>{604};
    QTest::newRow("half a plate") << faultOf("absorbance-measurement", "partial-data")
                                  << QVector<int>{601, 604, 609} << QVector<int>{604};
    QTest::newRow("unplugs itself")
        << faultOf("luminescence-measurement", "unplug") << QVector<int>{601} << QVector<int>();
}

void tst_Conformance::simulator()
{
    QFETCH(QByteArray, fault);
    QFETCH(QVector<int>, rules);
    QFETCH(QVector<int>, broken);
    QTemporaryFile scenario;
    QVERIFY(scenario.open());
    scenario.write(R"({"timeScale": 0, "instruments": [{"model": "combined-384", "faults": [)"
                   + fault + "]}]}");
    QVERIFY(scenario.flush());
    qputenv("QELDEVICES_SIMULATOR", scenario.fileName().toLocal8Bit());
    Request request;
    request.fileName = QStringLiteral(SIMULATOR);
    request.isUnsafe = true;
    request.answers = Answers::Confirm;
    request.limits = shortLimits();
    request.rules = rules;
    const Report report = Checker(request).run();
    QCOMPARE(report.error, QString());
    QVERIFY2(brokenRules(report) == broken, qPrintable(describe(report)));
    QVERIFY(report.count(Judgement::Passed) > 0 || !broken.isEmpty());
}

void tst_Conformance::selectedRules()
{
    Request request = requestFor(QStringLiteral("401-never-opens"));
    request.rules = {904, 103, 401};
    QVector<int> numbers;
    const Report report =
        Checker(request).run([&](const Result &result) { numbers += result.rule->number; });
    QCOMPARE(numbers, QVector<int>({103, 401, 904}));
    QCOMPARE(report.count(Judgement::Passed), 1);
    QCOMPARE(report.count(Judgement::Failed), 1);
    QCOMPARE(report.results.constLast().judgement, Judgement::NotRun);
    QVERIFY(report.results.constLast().seen.contains(QStringLiteral("does not open")));
}

void tst_Conformance::wrongSelection_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("driver");
    QTest::addColumn<QString>("serial");
    QTest::newRow("file") << QStringLiteral("there-is-none") << QString() << QString();
    QTest::newRow("driver") << QStringLiteral("good") << QStringLiteral("Good") << QString();
    QTest::newRow("serial") << QStringLiteral("good") << QString() << QStringLiteral("G-3");
}

void tst_Conformance::wrongSelection()
{
    QFETCH(QString, file);
    QFETCH(QString, driver);
    QFETCH(QString, serial);
    Request request = requestFor(file);
    request.driver = driver;
    request.serial = serial;
    const Report report = Checker(request).run();
    const QString wanted = driver + serial;
    QVERIFY2(report.error.contains(wanted.isEmpty() ? file : wanted), qPrintable(report.error));
    QCOMPARE(report.count(Judgement::Failed), 0);
}

void tst_Conformance::crashAndHangAreNamed_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("words");
    QTest::newRow("crash") << QStringLiteral("906-dies-while-opening")
                           << QStringLiteral("signal 6");
    QTest::newRow("last words") << QStringLiteral("906-dies-while-opening")
                                << QStringLiteral("deleted too early");
    QTest::newRow("crash at exit")
        << QStringLiteral("909-asks-the-application") << QStringLiteral("there is no application");
    QTest::newRow("hang") << QStringLiteral("704-hangs-on-stray-answer")
                          << QStringLiteral("held the event loop");
    QTest::newRow("hang in enumeration")
        << QStringLiteral("202-enumeration-hangs") << QStringLiteral("in availableDevices()");
}

void tst_Conformance::crashAndHangAreNamed()
{
    QFETCH(QString, name);
    QFETCH(QString, words);
    const Report report = m_reports.value(name);
    QVERIFY2(describe(report).contains(words), qPrintable(describe(report)));
    // It is one finding, and what does not need the call was judged all the same.
    QCOMPARE(report.count(Judgement::Failed), 1);
    QCOMPARE(report.results.size(), allRules().size());
    const bool isLastJudged = name != QLatin1String("202-enumeration-hangs");
    QCOMPARE(judgementOf(report, 1307), isLastJudged ? Judgement::Passed : Judgement::NotRun);
}

// As when the checker is interrupted: the process that holds the instrument sees its input end.
void tst_Conformance::closesWhenAbandoned()
{
    Limits limits = shortLimits();
    limits.run = 60000;
    const QJsonObject request = {
        {QStringLiteral("file"), QStringLiteral(MUTANTS "/601-no-ending.so")},
        {QStringLiteral("limits"), limits.toJson()},
        {QStringLiteral("rules"), QJsonArray{601}}};
    qel::isolation::ChildProcess worker;
    QVERIFY(worker.start(QCoreApplication::applicationFilePath(),
                         {QStringLiteral("--conformance-worker")}));
    worker.send(QJsonDocument(request).toJson());
    // Signs of life follow the start of the rule, by then the run is waiting for its ending.
    QByteArray answer;
    while (answer != "{}") {
        const auto next = worker.receive(QDeadlineTimer(10000));
        QVERIFY(next);
        answer = *next;
    }
    QCOMPARE(int(worker.finish(QDeadlineTimer(10000)).kind), int(qel::isolation::Ending::Exited));
    QVERIFY(worker.lastWords().contains("closed in good order"));
}

void tst_Conformance::soakFindsTheShortestSequence()
{
    const quint32 seed = 4711;
    const int seconds = 20;
    const SoakReport report =
        soak(requestFor(QStringLiteral("901-close-forgets-run")), seconds, seed);
    QCOMPARE(report.error, QString());
    QVERIFY2(report.fault.contains(QStringLiteral("has no end")), qPrintable(toText(report)));
    // Opening, waiting for it, and a run that goes on: no step can be spared.
    QVERIFY2(report.steps.size() <= 3, qPrintable(toText(report)));
    const SoakReport good = soak(requestFor(QStringLiteral("good")), 1, seed);
    QVERIFY2(good.fault.isEmpty() && good.error.isEmpty(), qPrintable(toText(good)));
    QVERIFY(good.sequences > 0);
}

void tst_Conformance::formats()
{
    const Report report = m_reports.value(QStringLiteral("601-two-endings"));
    const QJsonObject json = toJson(report, QStringLiteral("x.so"));
    QCOMPARE(json.value(QStringLiteral("failed")).toInt(), 1);
    QJsonObject broken;
    const QJsonArray rules = json.value(QStringLiteral("rules")).toArray();
    for (const QJsonValue &rule : rules) {
        if (rule.toObject().value(QStringLiteral("outcome")) == QLatin1String("failed"))
            broken = rule.toObject();
    }
    QCOMPARE(broken.value(QStringLiteral("number")).toInt(), 601);
    int endings = 0;
    const QJsonArray lines = broken.value(QStringLiteral("signals")).toArray();
    for (const QJsonValue &line : lines)
        endings += line.toString().contains(QStringLiteral("executed(DF_ReferenceNumber, true"));
    QCOMPARE(endings, 2);

    QXmlStreamReader xml(toJUnit(report, QStringLiteral("x.so")));
    QMap<QString, int> elements;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement)
            ++elements[xml.name().toString()];
    }
    QVERIFY2(!xml.hasError(), qPrintable(xml.errorString()));
    QCOMPARE(elements.value(QStringLiteral("testcase")), allRules().size());
    QCOMPARE(elements.value(QStringLiteral("failure")), 1);
}

void tst_Conformance::pageIsUpToDate()
{
    QFile page(QStringLiteral(RULES_PAGE));
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY2(page.readAll() == rulesPage().toUtf8(),
             "write it anew with 'tst_conformance --rules-page'");
}

// Shows what is broken; whether nothing is.
static bool check(const QString &fileName)
{
    Request request;
    request.fileName = fileName;
    request.isUnsafe = true;
    request.answers = Answers::Confirm;
    request.limits = shortLimits();
    const Report report = Checker(request).run();
    std::fputs(qPrintable(describe(report) + summary(report)), stdout);
    const bool isJudged =
        std::all_of(report.results.cbegin(), report.results.cend(), [](const Result &r) {
            return r.judgement != Judgement::NotRun || r.isLeftOut;
        });
    return report.error.isEmpty() && brokenRules(report).isEmpty() && isJudged;
}

int main(int argc, char **argv)
{
    if (isWorker(argc, argv))
        return runWorker(argc, argv);
    if (argc == 2 && qstrcmp(argv[1], "--rules-page") == 0) {
        std::fputs(rulesPage().toUtf8().constData(), stdout);
        return EXIT_SUCCESS;
    }
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--check") == 0)
        return check(QString::fromLocal8Bit(argv[2])) ? EXIT_SUCCESS : EXIT_FAILURE;
    tst_Conformance test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_conformance.moc"
