#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QProcess>
#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

class TestDoctor : public QObject
{
    Q_OBJECT

private slots:
    void judgesNamedFiles_data();
    void judgesNamedFiles();
    void loadsInstalledPlugins();
    void speaksGermanToPeopleOnly();
    void printsHarmlessText();
    void rejectsWrongUsage();
};

struct Answer
{
    int exitCode = -1;
    QByteArray output;

    QJsonObject json() const
    {
        return QJsonDocument::fromJson(output).object();
    }
};

static Answer run(const QString &program, const QStringList &arguments,
                  const QByteArray &input = QByteArray())
{
    QProcess process;
    process.start(program, arguments);
    process.write(input);
    process.closeWriteChannel();
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), process.readAllStandardOutput()};
}

static Answer doctor(const QStringList &arguments, const QStringList &before = QStringList())
{
    return run(QStringLiteral(QELCTL), before + QStringList{QStringLiteral("doctor")} + arguments);
}

static bool fitsSchema(const Answer &answer)
{
    const QString check =
        QStringLiteral("import json, jsonschema, sys\n"
                       "jsonschema.validate(json.load(sys.stdin), json.load(open(sys.argv[1])))\n");
    return run(QStringLiteral("python3"), {QStringLiteral("-c"), check, QStringLiteral(SCHEMA)},
               answer.output)
               .exitCode
        == 0;
}

static QMap<QString, QString> verdicts(const QJsonArray &files)
{
    QMap<QString, QString> result;
    for (const QJsonValue &file : files) {
        QStringList codes{file[QStringLiteral("verdict")].toString()};
        for (const QJsonValue &finding : file[QStringLiteral("findings")].toArray())
            codes.append(finding[QStringLiteral("code")].toString());
        result.insert(file[QStringLiteral("file")].toString().section(QLatin1Char('/'), -1),
                      codes.join(QLatin1Char(' ')));
    }
    return result;
}

void TestDoctor::judgesNamedFiles_data()
{
    QTest::addColumn<QStringList>("paths"); // below the folder of built files
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("last"); // verdict and codes of the last file

    QTest::newRow("usable") << QStringList{QStringLiteral("driver.so")} << 0
                            << QStringLiteral("usable");
    QTest::newRow("twice the same")
        << QStringList{QStringLiteral("driver.so"), QStringLiteral("driver.so")} << 0
        << QStringLiteral("usable");
    QTest::newRow("one of two not usable")
        << QStringList{QStringLiteral("driver.so"), QStringLiteral("newerqt.so")} << 1
        << QStringLiteral("not-usable other-qt");
    QTest::newRow("no such file") << QStringList{QStringLiteral("gone.so")} << 1
                                  << QStringLiteral("not-usable not-found");
}

void TestDoctor::judgesNamedFiles()
{
    QFETCH(const QStringList, paths);
    QFETCH(const int, exitCode);
    QFETCH(const QString, last);

    QStringList arguments{QStringLiteral("--json")};
    for (const QString &path : paths)
        arguments.append(QStringLiteral(FILES "/") + path);
    const Answer answer = doctor(arguments);
    QCOMPARE(answer.exitCode, exitCode);
    QVERIFY2(fitsSchema(answer), answer.output.constData());
    const QJsonArray files = answer.json().value(QStringLiteral("files")).toArray();
    QCOMPARE(files.size(), paths.size());
    QCOMPARE(verdicts(files).value(paths.constLast()), last);
}

void TestDoctor::loadsInstalledPlugins()
{
    const QTemporaryDir folder;
    for (const char *name : {"alpha.so", "crash.so", "none.so"}) {
        QVERIFY(QFile::copy(QStringLiteral(FILES "/driver.so"),
                            folder.filePath(QString::fromLatin1(name))));
    }
    QVERIFY(QDir(folder.path()).mkdir(QStringLiteral("later")));
    QVERIFY(QFile::copy(QStringLiteral(FILES "/driver.so"),
                        folder.filePath(QStringLiteral("later/alpha-2.so"))));

    const Answer named = doctor({QStringLiteral("--json"), folder.path()});
    QCOMPARE(named.exitCode, 0); // the one that crashes was not loaded
    QVERIFY2(fitsSchema(named), named.output.constData());

    const Answer installed =
        doctor({QStringLiteral("--json")},
               {QStringLiteral("--plugins"), QDir::current().relativeFilePath(folder.path())});
    QCOMPARE(installed.exitCode, 1);
    QVERIFY2(fitsSchema(installed), installed.output.constData());
    const QJsonArray folders = installed.json().value(QStringLiteral("folders")).toArray();
    QCOMPARE(folders.size(), 3);
    QCOMPARE(folders.at(0)[QStringLiteral("folder")].toString(),
             QFileInfo(QStringLiteral(QELCTL)).path() + QStringLiteral("/devicedrivers"));
    const auto found = verdicts(folders.at(2)[QStringLiteral("files")].toArray());
    QCOMPARE(found.value(QStringLiteral("crash.so")), QStringLiteral("not-usable does-not-load"));
    QCOMPARE(found.value(QStringLiteral("none.so")),
             QStringLiteral("usable-with-warnings no-driver"));
    // Which of the two is loaded first is the file system's choice.
    const QStringList pair{found.value(QStringLiteral("alpha.so")),
                           found.value(QStringLiteral("alpha-2.so"))};
    QCOMPARE(pair.filter(QStringLiteral("usable-with-warnings shadowed")).size(), 1);
    QCOMPARE(pair.count(QStringLiteral("usable")), 1);
}

void TestDoctor::speaksGermanToPeopleOnly()
{
    const QStringList german{QStringLiteral("--lang"), QStringLiteral("de")};
    const QTemporaryDir folder;
    const QString crash = folder.filePath(QStringLiteral("crash.so"));
    QVERIFY(QFile::copy(QStringLiteral(FILES "/driver.so"), crash));
    const QStringList plugins{QStringLiteral("--plugins"), folder.path()};
    const QByteArray text = doctor({}, german + plugins).output;
    QVERIFY2(text.contains("Sie l\xc3\xa4sst sich nicht laden: der Prozess endete mit Signal 6"),
             text.constData());
    QVERIFY2(text.contains("-> Melden Sie das dem Hersteller des Treibers"), text.constData());

    const QStringList json{QStringLiteral("--json"), QStringLiteral(FILES "/newerqt.so")};
    QVERIFY(!doctor(json).output.isEmpty());
    QCOMPARE(doctor(json, german).output, doctor(json).output);
}

void TestDoctor::printsHarmlessText()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("\x1b[2Jx.so")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const Answer answer = doctor({folder.path() + QLatin1Char('/')});
    QCOMPARE(answer.exitCode, 1);
    QVERIFY2(answer.output.contains("\n  \xef\xbf\xbd[2Jx.so: "), answer.output.constData());
    QVERIFY(!answer.output.contains('\x1b'));
}

void TestDoctor::rejectsWrongUsage()
{
    QCOMPARE(doctor({QStringLiteral("--nonsense")}).exitCode, 2);
}

QTEST_GUILESS_MAIN(TestDoctor)
#include "tst_doctor.moc"
