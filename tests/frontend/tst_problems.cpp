#include <qelfrontend/frontend.h>
#include <qelfrontend/problems.h>

#include <QtTest/QTest>

using namespace qel::frontend;
using qel::values::Problem;

class ProblemsTest : public QObject
{
    Q_OBJECT

private slots:
    void everyCodeHasASentence_data();
    void everyCodeHasASentence();
    void textsFromOutsideAreHarmless();
};

void ProblemsTest::everyCodeHasASentence_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<int>("code");
    for (const QLocale &locale : {QLocale(QLocale::English), QLocale(QLocale::German)}) {
        const auto codes = qel::values::problemCodes();
        for (const auto code : codes)
            QTest::addRow("%s %s", qPrintable(locale.name()),
                          qel::values::problemId(code).constData())
                << locale << int(code);
    }
}

void ProblemsTest::everyCodeHasASentence()
{
    QFETCH(QLocale, locale);
    QFETCH(int, code);
    installTranslations(locale);
    const QStringList details{QStringLiteral("<2>"), QStringLiteral("<3>"), QStringLiteral("<4>"),
                              QStringLiteral("<5>")};
    const Problem problem{Problem::Code(code), QStringLiteral("<1>"), details};
    const QString sentence = explain(problem);
    QVERIFY2(sentence.contains(u' ') && !sentence.contains(u'%'), qPrintable(sentence));
    // The sentence tells people all that the line for logs tells.
    const QString line = toString(problem);
    for (const char *part : {"<1>", "<2>", "<3>", "<4>", "<5>"}) {
        const QLatin1String text(part);
        QVERIFY2(sentence.contains(text) || !line.contains(text), qPrintable(sentence));
    }
}

void ProblemsTest::textsFromOutsideAreHarmless()
{
    installTranslations(QLocale(QLocale::English));
    const QString sentence =
        explain({Problem::ValueType, QStringLiteral("$.%2\x1b[31m"), {QStringLiteral("%1\n%2")}});
    QCOMPARE(
        sentence,
        QStringLiteral("The value at $.%2\uFFFD[31m is of the type \"%1\uFFFD%2\", which JSON is"
                       " not defined for."));
}

QTEST_GUILESS_MAIN(ProblemsTest)
#include "tst_problems.moc"
