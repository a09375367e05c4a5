#include "SessionTest.h"
#include "support/ManualClock.h"
#include "support/Table.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Platform::URLError;
using Platform::URLRequest;

namespace
{

bool isOver(const std::future<Outcome> &future)
{
    return future.wait_for(0s) == std::future_status::ready;
}

// How many seconds a request takes when the server does something every two; -1 when that does not help. With
// `isProgress` the server does it until the request has noticed.
int secondsToTheEnd(const std::future<Outcome> &future, ManualClock &clock, const std::function<void()> &act,
                    bool isProgress)
{
    int elapsed = 0;
    for (; !isOver(future) && elapsed < 100; elapsed += 2) {
        const auto acts = [&, before = clock.readCount()] {
            act();
            return !isProgress || clock.readCount() > before || isOver(future);
        };
        if (!QTest::qWaitFor(acts))
            return -1;
        clock.advance(2s);
        if (!QTest::qWaitFor([&] { return clock.pendingCount() == 1 || isOver(future); }))
            return -1;
    }
    return elapsed;
}

} // namespace

// What a session makes of servers that are slow, silent or without an end.
class tst_URLSessionLimits : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void timesOut_data()
    {
        QTest::addColumn<RawServer::Stage>("stage");
        QTest::addColumn<bool>("drips"); // one byte every two seconds
        QTest::addColumn<int>("seconds");
        QTest::newRow("no answer") << RawServer::Stage::Nothing << false << 12;
        QTest::newRow("in the head") << RawServer::Stage::HalfHead << false << 12;
        QTest::newRow("after the head") << RawServer::Stage::Head << false << 12;
        QTest::newRow("in the body") << RawServer::Stage::HalfBody << false << 12;
        QTest::newRow("in a slow head") << RawServer::Stage::Nothing << true << 12;
        QTest::newRow("in a slow body") << RawServer::Stage::Head << true << 62;
    }
    void timesOut()
    {
        QFETCH(RawServer::Stage, stage);
        QFETCH(bool, drips);
        m_server->setAnswer({.body = QByteArray(0x8000, 'x'), .stage = stage});
        ManualClock clock;
        URLRequest request = get(m_server->url());
        request.timeout = 10s;
        std::future<Outcome> future = start(*m_session, request);
        QTRY_COMPARE(m_server->requestCount(), 1);
        QTRY_COMPARE(clock.pendingCount(), 1);
        const auto drip = [this, drips] { m_server->resume(drips ? 1 : 0); };
        const int elapsed = secondsToTheEnd(future, clock, drip, drips && stage == RawServer::Stage::Head);
        QTEST(elapsed, "seconds");
        const Outcome seen = future.get();
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, URLError::Code::TimedOut);
    }

    // The server reads the beginning of what is sent, and then so much each time.
    void givesUpAnUpload_data()
    {
        addColumns<RawServer::Then, int, URLError::Code>("then", "piece", "code");
        QTest::newRow("reset") << RawServer::Then::Reset << 0 << URLError::Code::ConnectionLost;
        QTest::newRow("silence") << RawServer::Then::KeepOpen << 0 << URLError::Code::TimedOut;
        QTest::newRow("a byte now and then") << RawServer::Then::KeepOpen << 1 << URLError::Code::TimedOut;
        QTest::newRow("slow") << RawServer::Then::KeepOpen << 0x8000 << URLError::Code::TimedOut;
    }
    void givesUpAnUpload()
    {
        QFETCH(RawServer::Then, then);
        QFETCH(int, piece);
        static const QByteArray body(16 * MemoryWatch::mebibyte, 'x');
        m_server->setIntake(1000, then);
        ManualClock clock;
        URLRequest request = get(m_server->url());
        request.method = URLRequest::Method::Post;
        request.headers.insert("Content-Type", "text/x");
        request.body = body;
        request.timeout = 10s;
        std::future<Outcome> future = start(*m_session, request);
        QTRY_VERIFY(m_server->fullCount() > 0);
        if (then == RawServer::Then::KeepOpen) {
            const auto readOn = [this, piece] { m_server->readOn(piece); };
            const int elapsed = secondsToTheEnd(future, clock, readOn, piece > 1);
            // Sixty seconds only where it moves on all the time.
            QVERIFY2(elapsed >= 12 && (elapsed == 62) == (piece > 1), QByteArray::number(elapsed));
        }
        const Outcome seen = future.get();
        QVERIFY(!seen.data && seen.error);
        QTEST(seen.error->code, "code");
    }

    void endsAConnectionThatStalls_data()
    {
        addColumns<RawServer::Door, QByteArray>("door", "greeting");
        QTest::newRow("before it stands") << RawServer::Door::Full << QByteArray();
        QTest::newRow("before the greeting") << RawServer::Door::Open << QByteArray();
        QTest::newRow("within the greeting") << RawServer::Door::Open << halfAGreeting();
    }
    void endsAConnectionThatStalls()
    {
        QFETCH(RawServer::Door, door);
        QFETCH(QByteArray, greeting);
        trust(u"loopback"_s);
        RawServer safe(security(u"loopback"_s));
        safe.setAnswer(plain("next"));
        safe.setGreeting(greeting);
        safe.setDoor(door);
        const auto stalled = [&safe] { return safe.waitingCount() + safe.openConnectionCount(); };
        URLRequest request = get(safe.url());
        request.timeout = 10s;
        {
            ManualClock clock;
            for (int i = 0; i < manyRequests; ++i) {
                std::future<Outcome> future = start(*m_session, request);
                QTRY_COMPARE(stalled(), 1);
                QCOMPARE(secondsToTheEnd(
                             future, clock, [] {}, false),
                         12);
                QCOMPARE(future.get().error.value().code, URLError::Code::TimedOut);
                QTRY_COMPARE(stalled(), 0); // or it would be kept for others
            }
        }
        safe.setDoor(RawServer::Door::Open);
        safe.setGreeting({});
        QCOMPARE(dataOf(outcome(*m_session, request)), QByteArray("next"));
    }

    void cutsOffALargeBody_data()
    {
        QTest::addColumn<RawServer::Answer>("answer");
        QTest::addColumn<std::optional<qint64>>("ownLimit"); // of the request
        QTest::addColumn<bool>("fits");
        const std::optional<qint64> none;
        const QByteArray most(1 << 20, 'x');
        QTest::newRow("as large as allowed") << plain(most) << none << true;
        QTest::newRow("one byte more") << plain(most + 'x') << none << false;
        QTest::newRow("without a length") << chunked(most + 'x') << none << false;
        QTest::newRow("as large as the request allows")
            << plain(QByteArray(10, 'x')) << std::optional<qint64>(10) << true;
        QTest::newRow("larger than that") << chunked(QByteArray(11, 'x')) << std::optional<qint64>(10) << false;
        QTest::newRow("allowed by the request alone") << plain(most + 'x') << std::optional<qint64>(2 << 20) << false;
        RawServer::Answer announced = plain("x");
        announced.headers = {{"Content-Length", "4000000000"}};
        QTest::newRow("announced, not sent") << announced << none << false;
    }
    void cutsOffALargeBody()
    {
        QFETCH(RawServer::Answer, answer);
        QFETCH(std::optional<qint64>, ownLimit);
        QFETCH(bool, fits);
        m_server->setAnswer(answer);
        URLRequest request = get(m_server->url());
        request.maximumBodySize = ownLimit;
        const Outcome seen = outcome(*m_session, request);
        QCOMPARE(seen.data.has_value(), fits);
        if (!fits)
            QCOMPARE(seen.error->code, URLError::Code::TooLarge);
    }

    // What comes without an end and without a pause is cut off on its way: the server's connection ends while it still
    // sends, and meanwhile others are answered.
    void cutsOffWhatDoesNotEnd_data()
    {
        addColumns<QByteArray, QByteArray, URLError::Code>("head", "again", "code");
        const QByteArray piece(0x8000, 'x');
        const QByteArray start = "HTTP/1.1 200 OK\r\n";
        QTest::newRow("status") << QByteArray("HTTP/1.1 200 ") << piece << URLError::Code::TimedOut;
        QTest::newRow("header") << QByteArray(start + "X-Y: ") << piece << URLError::Code::TimedOut;
        QTest::newRow("headers") << start << QByteArray("X-Y: z\r\n").repeated(1000) << URLError::Code::TimedOut;
        QTest::newRow("informational answers")
            << QByteArray("HTTP/1.1 100 Continue\r\n\r\n") << QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(1000)
            << URLError::Code::TimedOut;
        QTest::newRow("body") << QByteArray(start + "\r\n") << piece << URLError::Code::TooLarge;
        QTest::newRow("chunks") << QByteArray(start + "Transfer-Encoding: chunked\r\n\r\n")
                                << QByteArray("8000\r\n" + piece + "\r\n") << URLError::Code::TooLarge;
        QTest::newRow("length of a chunk") << QByteArray(start + "Transfer-Encoding: chunked\r\n\r\n")
                                           << QByteArray(0x8000, '0') << URLError::Code::TimedOut;
        QTest::newRow("body of a redirect")
            << QByteArray("HTTP/1.1 302 Found\r\nLocation: /\r\n\r\n") << piece << URLError::Code::TooLarge;
    }
    void cutsOffWhatDoesNotEnd()
    {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, again);
        m_server->setAnswer({.body = again, .head = head, .then = RawServer::Then::Repeat});
        ManualClock clock;
        std::future<Outcome> future = start(*m_session, get(m_server->url()));
        QTRY_VERIFY(m_server->sentSize() > 4 * MemoryWatch::mebibyte || isOver(future));
        RawServer other;
        other.setAnswer({.body = "other"});
        QCOMPARE(dataOf(outcome(*m_session, get(other.url()))), QByteArray("other"));
        clock.advance(61s); // a head that grows makes no progress
        QTRY_VERIFY(isOver(future));
        const Outcome seen = future.get();
        QVERIFY(seen.error);
        QTEST(seen.error->code, "code");
        QTRY_COMPARE(m_server->openConnectionCount(), 0);
    }
};

QTEST_GUILESS_MAIN(tst_URLSessionLimits)
#include "tst_URLSessionLimits.moc"
