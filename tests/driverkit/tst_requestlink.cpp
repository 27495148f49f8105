#include <qeldriver/requestlink.h>

#include <QtTest/QtTest>

using namespace qel::driver;

// The near end of a line. What is written is seen by the test, which plays the instrument.
class Line : public QIODevice
{
public:
    Line()
    {
        open(ReadWrite | Unbuffered);
    }
    bool isSequential() const override
    {
        return true;
    }
    qint64 bytesAvailable() const override
    {
        return m_coming.size() + QIODevice::bytesAvailable();
    }
    void answer(const QByteArray &bytes)
    {
        m_coming += bytes;
        emit readyRead();
    }

    QByteArray sent;
    bool isBroken = false;

protected:
    qint64 readData(char *data, qint64 maximum) override
    {
        const int count = int(qMin<qint64>(maximum, m_coming.size()));
        memcpy(data, m_coming.constData(), size_t(count));
        m_coming.remove(0, count);
        return count;
    }
    qint64 writeData(const char *data, qint64 count) override
    {
        if (isBroken)
            return -1;
        sent.append(data, int(count));
        return count;
    }

private:
    QByteArray m_coming;
};

class tst_RequestLink : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void oneAfterAnother();
    void streamedAnswers();
    void lateAnswerIsNobodys();
    void givenUpAnswerIsNobodys();
    void stopGoesOutAtOnce();
    void whatCannotBeAnAnswer();
    void repetitions();
    void noiseWithoutEnd();
    void gone_data();
    void gone();
    void letGoFromWithinAnAnswer();

private:
    RequestLink::Request request(const QByteArray &bytes, int limit = 5000);

    std::unique_ptr<Line> m_line;
    std::unique_ptr<RequestLink> m_link;
    QByteArray m_log; // of all answers and silences
};

void tst_RequestLink::init()
{
    m_link = std::make_unique<RequestLink>();
    m_line = std::make_unique<Line>();
    m_link->setConnection(m_line.get());
    m_link->setSettlingTime(std::chrono::milliseconds(30));
    m_log.clear();
    connect(m_link.get(), &RequestLink::gone, this, [this] { m_log += "gone;"; });
    connect(m_link.get(), &RequestLink::unasked, this,
            [this](const QByteArray &message) { m_log += "unasked " + message.trimmed() + ";"; });
}

// Notes what becomes of it.
RequestLink::Request tst_RequestLink::request(const QByteArray &bytes, int limit)
{
    RequestLink::Request request;
    request.bytes = bytes + '\n';
    request.limit = std::chrono::milliseconds(limit);
    request.answered = [this, bytes](const QByteArray &answer) {
        m_log += bytes + '=' + answer.trimmed() + ';';
        return true;
    };
    request.unanswered = [this, bytes] { m_log += bytes + "=nothing;"; };
    return request;
}

void tst_RequestLink::oneAfterAnother()
{
    m_link->send(request("a"));
    m_link->send(request("b"));
    QCOMPARE(m_line->sent, QByteArray("a\n"));
    m_line->answer("1");
    QCOMPARE(m_log, QByteArray());
    m_line->answer("\n2\n3\n"); // half a message, and more than one
    QCOMPARE(m_line->sent, QByteArray("a\nb\n"));
    QCOMPARE(m_log, QByteArray("a=1;b=2;unasked 3;"));
    QVERIFY(m_link->isIdle());
}

void tst_RequestLink::streamedAnswers()
{
    RequestLink::Request wells = request("wells");
    wells.answered = [this](const QByteArray &answer) {
        m_log += answer.trimmed() + ';';
        return answer == "end\n";
    };
    m_link->send(wells);
    m_link->send(request("b"));
    m_line->answer("1\n2\n");
    QCOMPARE(m_line->sent, QByteArray("wells\n"));
    m_line->answer("end\n3\n");
    QCOMPARE(m_log, QByteArray("1;2;end;b=3;"));
}

void tst_RequestLink::lateAnswerIsNobodys()
{
    RequestLink::Request slow = request("slow", 1);
    slow.unanswered = [this] {
        m_log += "slow=nothing;";
        QTest::ignoreMessage(QtWarningMsg, "Discarded a late answer: \"late\\n\"");
        m_line->answer("late\n");
        QCOMPARE(m_line->sent, QByteArray("slow\n")); // nothing before the line is quiet
    };
    m_link->send(slow);
    m_link->send(request("next"));
    QTRY_COMPARE(m_line->sent, QByteArray("slow\nnext\n"));
    m_line->answer("right\n");
    QCOMPARE(m_log, QByteArray("slow=nothing;next=right;"));
}

void tst_RequestLink::givenUpAnswerIsNobodys()
{
    m_link->send(request("a"));
    m_link->send(request("b"));
    m_link->clear();
    m_link->send(request("c"));
    QCOMPARE(m_line->sent, QByteArray("a\n"));
    m_line->answer("of a\n");
    QTRY_COMPARE(m_line->sent, QByteArray("a\nc\n"));
    m_line->answer("of c\n");
    QCOMPARE(m_log, QByteArray("c=of c;"));
}

void tst_RequestLink::stopGoesOutAtOnce()
{
    m_link->clear("stop\n"); // nothing is under way: nothing to stop
    QCOMPARE(m_line->sent, QByteArray());
    m_link->send(request("long"));
    m_link->clear("stop\n");
    m_link->send(request("next"));
    m_line->answer("1\nstopped\n");
    QCOMPARE(m_line->sent, QByteArray("long\nstop\n"));
    QTRY_COMPARE(m_line->sent, QByteArray("long\nstop\nnext\n"));
    QCOMPARE(m_log, QByteArray());
}

void tst_RequestLink::whatCannotBeAnAnswer()
{
    RequestLink::Request request = this->request("a");
    request.accepts = [](const QByteArray &message) { return message.startsWith("A"); };
    m_link->send(request);
    QTest::ignoreMessage(QtWarningMsg, "Discarded what is no answer to \"a\\n\" : \"x\\n\"");
    m_line->answer("x\nA1\n");
    QCOMPARE(m_log, QByteArray("a=A1;"));
}

void tst_RequestLink::repetitions()
{
    RequestLink::Request request = this->request("a", 1);
    request.repetitions = 2;
    m_link->send(request);
    QTRY_COMPARE(m_log, QByteArray("a=nothing;"));
    QCOMPARE(m_line->sent, QByteArray("a\na\na\n"));
}

void tst_RequestLink::noiseWithoutEnd()
{
    m_link->send(request("a"));
    QTest::ignoreMessage(QtWarningMsg, "Discarded 16777217 bytes without an end of message.");
    m_line->answer(QByteArray(16 * 1024 * 1024 + 1, 'x'));
    m_line->answer("1\n");
    QCOMPARE(m_log, QByteArray("a=1;"));
}

void tst_RequestLink::gone_data()
{
    QTest::addColumn<QByteArray>("how");
    for (const char *how : {"closed", "finished", "not writable", "said"})
        QTest::newRow(how) << QByteArray(how);
}

void tst_RequestLink::gone()
{
    QFETCH(QByteArray, how);
    m_line->isBroken = how == "not writable";
    m_link->send(request("a", 1));
    if (how == "closed")
        m_line->close();
    else if (how == "finished")
        emit m_line->readChannelFinished();
    else if (how == "said")
        m_link->setGone();
    m_link->send(request("b", 1));
    QTest::qWait(10);
    QCOMPARE(m_log, QByteArray("gone;"));
}

void tst_RequestLink::letGoFromWithinAnAnswer()
{
    RequestLink::Request request = this->request("a");
    request.answered = [this](const QByteArray &) {
        m_link.reset();
        return true;
    };
    m_link->send(request);
    m_line->answer("1\n2\n");
    QVERIFY(!m_link);
}

QTEST_GUILESS_MAIN(tst_RequestLink)
#include "tst_requestlink.moc"
