// The test is its own child: started with an argument, it does what that says.
#include <qelisolation/childprocess.h>
#include <qelisolation/parentlink.h>

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <vector>

#include <sys/resource.h>
#include <unistd.h>

using namespace qel::isolation;
using namespace std::chrono_literals;

static const QDeadlineTimer soon(std::chrono::milliseconds ms = 20s)
{
    return QDeadlineTimer(ms);
}

class IsolationTest : public QObject
{
    Q_OBJECT

private slots:
    void carriesMessages();
    void tellsWithoutBeingAsked();
    void tellsTheEnding_data();
    void tellsTheEnding();
    void keepsWhatCameBeforeTheEnd();
    void cannotStart();
    void limits_data();
    void limits();
    void leavesNoCoreFile();
    void endsGrandchildren();
    void endsWithTheParent();
};

static bool isGone(pid_t process)
{
    // What has ended and waits for its parent is gone, too.
    QFile status(QStringLiteral("/proc/%1/stat").arg(process));
    return !status.open(QFile::ReadOnly) || status.readAll().contains(") Z ");
}

static bool start(ChildProcess *child, const char *what, const Limits &limits = {})
{
    return child->start(QCoreApplication::applicationFilePath(),
                        {QStringLiteral("--child"), QString::fromLatin1(what)}, limits);
}

void IsolationTest::carriesMessages()
{
    ChildProcess child;
    QVERIFY(start(&child, "echo"));
    const QList<QByteArray> messages{"one", QByteArray(), QByteArray(3000000, '\n')};
    for (const QByteArray &message : messages)
        child.send(message);
    for (const QByteArray &message : messages)
        QCOMPARE(child.receive(soon()).value_or("none"), message);
    QVERIFY(!child.receive());
    QVERIFY(child.isRunning());
    const Ending ending = child.finish(soon());
    QVERIFY2(ending.isClean(), qPrintable(ending.text()));
    QCOMPARE(child.lastWords(), QByteArray("printed"));
}

void IsolationTest::tellsWithoutBeingAsked()
{
    ChildProcess child;
    QSignalSpy ended(&child, &ChildProcess::ended);
    QList<QByteArray> got;
    connect(&child, &ChildProcess::received, this, [&] {
        while (const auto message = child.receive())
            got += *message;
    });
    QVERIFY(start(&child, "echo"));
    child.send("a");
    child.send("b");
    QTRY_COMPARE(got, (QList<QByteArray>{"a", "b"}));
    child.send("end");
    QTRY_COMPARE(ended.count(), 1);
}

void IsolationTest::tellsTheEnding_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("text");
    const auto row = [](const char *what, Ending::Kind kind, const char *text) {
        QTest::newRow(what) << int(kind) << QString::fromLatin1(text);
    };
    row("segfault", Ending::Crashed, "the process ended with signal 11 (Segmentation fault)");
    row("abort", Ending::Crashed, "the process ended with signal 6 (Aborted)");
    row("exit0", Ending::Exited, "the process was ended by exit(0)");
    row("exit3", Ending::Exited, "the process was ended by exit(3)");
    row("hang", Ending::Hung, "the process did not come back");
    row("garble", Ending::Garbled, "the process sent something that is no message");
}

void IsolationTest::tellsTheEnding()
{
    QFETCH(const int, kind);
    QFETCH(const QString, text);
    ChildProcess child;
    QVERIFY(start(&child, QTest::currentDataTag()));
    const bool hangs = kind == Ending::Hung;
    QVERIFY(!child.receive(hangs ? soon(50ms) : soon()));
    QCOMPARE(child.isRunning(), hangs);
    const Ending ending = child.finish(soon(hangs ? 50ms : 20s));
    QCOMPARE(int(ending.kind), kind);
    QCOMPARE(ending.text(), text);
}

void IsolationTest::keepsWhatCameBeforeTheEnd()
{
    ChildProcess child;
    QVERIFY(start(&child, "speak-and-crash"));
    QTRY_VERIFY(!child.isRunning());
    QCOMPARE(child.receive().value_or("none"), QByteArray("last message"));
    QCOMPARE(child.ending().code, SIGABRT);
    QVERIFY(child.lastWords().endsWith("last words"));
    QVERIFY(child.lastWords().size() < 10000);
}

void IsolationTest::cannotStart()
{
    ChildProcess child;
    QVERIFY(!child.start(QStringLiteral("/nowhere/at-all"), {}));
    QVERIFY(!child.receive(soon()));
    QCOMPARE(child.finish(soon()).text(), QStringLiteral("the process could not be started"));
}

void IsolationTest::limits_data()
{
    QTest::addColumn<quint64>("memory");
    QTest::addColumn<int>("seconds");
    QTest::addColumn<int>("signal");
    // A sanitizer has every address for itself and takes no such limit.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
    QTest::newRow("eat") << quint64(1) << 0 << SIGABRT;
#endif
    QTest::newRow("burn") << quint64(0) << 1 << SIGKILL;
}

void IsolationTest::limits()
{
    QFETCH(const quint64, memory);
    QFETCH(const int, seconds);
    QFETCH(const int, signal);
    ChildProcess child;
    const Limits limits{memory * 512 * 1024 * 1024, std::chrono::seconds(seconds)};
    QVERIFY(start(&child, QTest::currentDataTag(), limits));
    QVERIFY(!child.receive(soon()));
    const Ending ending = child.finish(soon());
    QVERIFY2(ending.kind == Ending::Crashed && ending.code == signal,
             qPrintable(ending.text() + QString::fromLocal8Bit(child.lastWords())));
}

void IsolationTest::leavesNoCoreFile()
{
    ChildProcess child;
    QVERIFY(start(&child, "core-limit"));
    QCOMPARE(child.receive(soon()).value_or("none"), QByteArray("0"));
}

void IsolationTest::endsGrandchildren()
{
    ChildProcess child;
    QVERIFY(start(&child, "fork"));
    const pid_t grandchild = child.receive(soon()).value_or("0").toInt();
    QVERIFY(grandchild > 0 && !isGone(grandchild));
    child.kill();
    QTRY_VERIFY(isGone(grandchild));
}

void IsolationTest::endsWithTheParent()
{
    ChildProcess child;
    QVERIFY(start(&child, "parent"));
    const pid_t grandchild = child.receive(soon()).value_or("0").toInt();
    QVERIFY(grandchild > 0);
    QCOMPARE(child.finish(soon()).code, 0);
    QTRY_VERIFY(isGone(grandchild));
}

static void fail(int signal)
{
    std::signal(signal, SIG_DFL); // a sanitizer would make a report of it
    std::raise(signal);
}

static int runChild(const QByteArray &what)
{
    if (what == "garble")
        return std::fputs("no message at all", stdout) < 0;
    ParentLink parent;
    if (what == "echo") {
        std::printf("printed");
        std::fflush(stdout);
        while (const auto message = parent.receive()) {
            if (*message == "end")
                break;
            parent.send(*message);
        }
    } else if (what == "segfault") {
        fail(SIGSEGV);
    } else if (what == "abort") {
        fail(SIGABRT);
    } else if (what == "exit3") {
        std::exit(3);
    } else if (what == "hang") {
        for (;;)
            ::pause();
    } else if (what == "speak-and-crash") {
        std::fputs(QByteArray(100000, '.') + "last words", stderr);
        parent.send("last message");
        fail(SIGABRT);
    } else if (what == "eat") {
        std::vector<std::vector<char>> all;
        for (;;)
            all.emplace_back(16 * 1024 * 1024, 'x');
    } else if (what == "burn") {
        for (volatile unsigned i = 0;; i = i + 1) { }
    } else if (what == "core-limit") {
        rlimit limit{};
        ::getrlimit(RLIMIT_CORE, &limit);
        parent.send(QByteArray::number(qulonglong(limit.rlim_max)));
    } else if (what == "fork") {
        const pid_t grandchild = ::fork();
        if (grandchild > 0)
            parent.send(QByteArray::number(grandchild));
        for (;;)
            ::pause();
    } else if (what == "parent") {
        // A child in the middle of its work, whose parent does not say goodbye.
        ChildProcess grandchild;
        if (grandchild.start(QCoreApplication::applicationFilePath(),
                             {QStringLiteral("--child"), QStringLiteral("orphan")}))
            parent.send(grandchild.receive(soon()).value_or("0"));
        ::_exit(0);
    } else if (what == "orphan") {
        parent.dieWithParent();
        parent.send(QByteArray::number(::getpid()));
        for (;;)
            ::pause();
    }
    return 0;
}

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    if (argc == 3 && qstrcmp(argv[1], "--child") == 0)
        return runChild(argv[2]);
    IsolationTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_isolation.moc"
