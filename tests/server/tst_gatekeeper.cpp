// What the server lets its clients do.
#include <gatekeeper.h>

#include <QtTest/QtTest>

using namespace qel::server;

class tst_Gatekeeper : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void limitsStreams();
    void limitsCallsAndBytes_data();
    void limitsCallsAndBytes();

private:
    QTemporaryDir m_folder;
    Clients m_clients{m_folder.path()};
    std::unique_ptr<Gatekeeper> m_gate;
};

void tst_Gatekeeper::init()
{
    m_gate = std::make_unique<Gatekeeper>(&m_clients, m_folder.path(), false);
}

void tst_Gatekeeper::limitsStreams()
{
    int streams = 0;
    while (streams < 1000 && m_gate->enter("anna").isEmpty())
        ++streams;
    QCOMPARE(streams, 256);
    // Everybody has limits of their own; who is on this machine has none.
    QVERIFY(m_gate->enter("bert").isEmpty());
    for (int i = 0; i < 1000; ++i)
        QVERIFY(m_gate->enter({}).isEmpty());
    m_gate->leave("anna");
    QVERIFY(m_gate->enter("anna").isEmpty());
    QVERIFY(m_gate->enter("anna").contains("256 sessions"));
}

void tst_Gatekeeper::limitsCallsAndBytes_data()
{
    QTest::addColumn<quint64>("size");
    QTest::addColumn<int>("allowed");
    QTest::addColumn<QString>("why");
    QTest::newRow("many") << quint64(10) << 5000 << "more than 5000 calls in a second";
    QTest::newRow("large") << quint64(16 * 1024 * 1024) << 4
                           << "more than 67108864 bytes in a second";
}

void tst_Gatekeeper::limitsCallsAndBytes()
{
    QFETCH(quint64, size);
    QFETCH(int, allowed);
    QFETCH(QString, why);
    QCOMPARE(m_gate->callRefusal("anna", size), QString());
    // The next second, from its beginning.
    QTest::qWait(1001);
    int calls = 0;
    while (calls < 10000 && m_gate->callRefusal("anna", size).isEmpty())
        ++calls;
    QCOMPARE(calls, allowed);
    QCOMPARE(m_gate->callRefusal("anna", size), why);
    QCOMPARE(m_gate->callRefusal("bert", size), QString());
    QCOMPARE(m_gate->callRefusal({}, size), QString());
    QTRY_COMPARE(m_gate->callRefusal("anna", size), QString());
}

QTEST_GUILESS_MAIN(tst_Gatekeeper)
#include "tst_gatekeeper.moc"
