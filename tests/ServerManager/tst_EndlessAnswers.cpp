#include "SessionTest.h"
#include "support/Table.h"

using namespace std::chrono_literals;
using Platform::URLError;
using Platform::URLRequest;

// Apart from the session's other tests because Qt loses memory here (cmake/sanitizers/EndlessAnswers.cpp).
class tst_EndlessAnswers : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    // What comes without an end and without a pause is cut off on its way.
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
        URLRequest request = get(m_server->url());
        request.timeout = 1s; // a head that grows makes no progress
        const Outcome seen = outcome(*m_session, request);
        QVERIFY(seen.error);
        QTEST(seen.error->code, "code");
        QVERIFY2(m_server->sentSize() < 64 * MemoryWatch::mebibyte, QByteArray::number(m_server->sentSize()));
    }
};

QTEST_GUILESS_MAIN(tst_EndlessAnswers)
#include "tst_EndlessAnswers.moc"
