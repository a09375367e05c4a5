#include "support/ManualClock.h"
#include "support/RawServer.h"
#include "support/Table.h"

#include "Platform/Network/URLSession.h"

#include <QTest>

#include <future>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Platform::URLError;
using Platform::URLRequest;
using Platform::URLResponse;
using Platform::URLSession;

namespace
{

struct Outcome {
    std::optional<QByteArray> data;
    std::optional<URLResponse> response;
    std::optional<URLError> error;
};

std::future<Outcome> start(URLSession &session, const URLRequest &request)
{
    const auto promise = std::make_shared<std::promise<Outcome>>();
    session.dataTask(request, [promise](const auto &data, const auto &response, const auto &error) {
        promise->set_value(Outcome{data, response, error});
    });
    return promise->get_future();
}

Outcome outcome(URLSession &session, const URLRequest &request)
{
    return start(session, request).get();
}

QByteArray dataOf(const Outcome &outcome)
{
    if (outcome.error)
        qWarning("%s", qUtf8Printable(outcome.error->description));
    return outcome.data.value_or(QByteArray("no data"));
}

URLRequest get(const QString &url)
{
    URLRequest request;
    request.url = QUrl(url);
    return request;
}

RawServer::Answer chunked(const QByteArray &body)
{
    RawServer::Answer answer;
    answer.headers = {{"Transfer-Encoding", "chunked"}};
    answer.body = QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
    return answer;
}

RawServer::Answer plain(const QByteArray &body)
{
    return {.body = body};
}

} // namespace

class tst_URLSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesAnyStatusWithItsBody_data()
    {
        addColumns<int, RawServer::Answer>("status", "answer");
        for (const int status : {200, 300, 304, 400, 403, 404, 405, 409, 410, 418, 429, 500, 501, 502, 503, 504}) {
            RawServer::Answer answer = status == 304 ? RawServer::Answer() : plain("body");
            QTest::addRow("%d", status) << status << answer;
        }
        QTest::newRow("204") << 204 << RawServer::Answer();
        QTest::newRow("500, chunked") << 500 << chunked("body");
        RawServer::Answer locked = plain("body");
        QTest::newRow("401 without a challenge") << 401 << locked;
        locked.headers = {{"WWW-Authenticate", "Basic realm=\"r\""}};
        QTest::newRow("401") << 401 << locked;
    }
    void givesAnyStatusWithItsBody()
    {
        QFETCH(int, status);
        QFETCH(RawServer::Answer, answer);
        RawServer server;
        answer.status = status;
        server.setAnswer(answer);
        URLSession session({});
        const Outcome seen = outcome(session, get(server.url()));
        QVERIFY(!seen.error);
        QCOMPARE(seen.response->status, status);
        QCOMPARE(dataOf(seen), answer.body.isEmpty() ? QByteArray() : QByteArray("body"));
    }

    void sendsMethodHeadersAndBody()
    {
        RawServer server;
        server.setAnswer(plain("answer"));
        URLSession session({});
        URLRequest request = get(server.url(u"/p?q=%2B+"_s));
        request.method = URLRequest::Method::Post;
        request.headers.insert("Content-Type", "text/x");
        request.body = QByteArray("a\0b", 3);
        const Outcome seen = outcome(session, request);
        QCOMPARE(dataOf(seen), QByteArray("answer"));
        QCOMPARE(seen.response->headers.value("content-length"), QByteArray("6"));
        const RawServer::Request sent = server.requests().constFirst();
        QVERIFY(sent.raw.startsWith("POST /p?q=%2B+ HTTP/1.1\r\n"));
        QCOMPARE(sent.headers.value("content-type"), QByteArray("text/x"));
        QCOMPARE(sent.headers.value("content-length"), QByteArray("3"));
        QCOMPARE(sent.headers.value("accept-encoding"), QByteArray("identity"));
        QCOMPARE(sent.body, request.body);
    }

    void refusesAddresses()
    {
        using Code = URLError::Code;
        for (const auto &[url, code] :
             std::initializer_list<std::pair<const char *, Code>>{{"", Code::BadURL},
                                                                  {"http://h:99999/", Code::BadURL},
                                                                  {"http:///path", Code::BadURL},
                                                                  {"image/upload", Code::UnsupportedURL},
                                                                  {"file:///etc/hostname", Code::UnsupportedURL},
                                                                  {"qrc:/x", Code::UnsupportedURL},
                                                                  {"data:,x", Code::UnsupportedURL},
                                                                  {"ftp://127.0.0.1/", Code::UnsupportedURL}}) {
            URLSession session({});
            const Outcome seen = outcome(session, get(QLatin1StringView(url)));
            QVERIFY2(!seen.data && !seen.response && seen.error && seen.error->code == code, url);
        }
    }

    void followsRedirects_data()
    {
        addColumns<int, QByteArray, QByteArray>("status", "method", "body");
        QTest::newRow("302") << 302 << QByteArray("GET") << QByteArray();
        QTest::newRow("303") << 303 << QByteArray("GET") << QByteArray();
        QTest::newRow("307") << 307 << QByteArray("POST") << QByteArray("sent");
        QTest::newRow("308") << 308 << QByteArray("POST") << QByteArray("sent");
    }
    void followsRedirects()
    {
        QFETCH(int, status);
        RawServer server;
        server.setHandler([status](const RawServer::Request &request) {
            return request.target == "/" ? RawServer::Answer::redirect("/there", status) : plain("found");
        });
        URLSession session({});
        URLRequest request = get(server.url());
        request.method = URLRequest::Method::Post;
        request.headers.insert("Content-Type", "text/x");
        request.body = "sent";
        const Outcome seen = outcome(session, request);
        QCOMPARE(dataOf(seen), QByteArray("found"));
        QCOMPARE(seen.response->url, QUrl(server.url(u"/there"_s)));
        const RawServer::Request last = server.requests().constLast();
        QTEST(last.method, "method");
        QTEST(last.body, "body");
        QCOMPARE(last.headers.contains("content-type"), !last.body.isEmpty());
    }

    void stopsRedirects_data()
    {
        addColumns<QByteArray, URLError::Code>("location", "code");
        QTest::newRow("to a file") << QByteArray("file:///etc/hostname") << URLError::Code::UnsupportedURL;
        QTest::newRow("to data") << QByteArray("data:,x") << URLError::Code::UnsupportedURL;
        QTest::newRow("in circles") << QByteArray("/") << URLError::Code::TooManyRedirects;
    }
    void stopsRedirects()
    {
        QFETCH(QByteArray, location);
        QFETCH(URLError::Code, code);
        RawServer server;
        server.setAnswer(RawServer::Answer::redirect(location));
        URLSession session({});
        const Outcome seen = outcome(session, get(server.url()));
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, code);
        QVERIFY(server.requestCount() <= 20);
    }

    void timesOut_data()
    {
        QTest::addColumn<RawServer::Stage>("stage");
        QTest::addColumn<bool>("drips"); // one byte every two seconds
        QTest::addColumn<int>("seconds");
        QTest::newRow("no answer") << RawServer::Stage::Nothing << false << 12;
        QTest::newRow("after the head") << RawServer::Stage::Head << false << 12;
        QTest::newRow("in the body") << RawServer::Stage::HalfBody << false << 12;
        QTest::newRow("in a slow body") << RawServer::Stage::Head << true << 62;
    }
    void timesOut()
    {
        QFETCH(RawServer::Stage, stage);
        QFETCH(bool, drips);
        RawServer server;
        server.setAnswer(RawServer::Answer::stall(stage));
        ManualClock clock;
        URLSession session({});
        URLRequest request = get(server.url());
        request.timeout = 10s;
        std::future<Outcome> future = start(session, request);
        QTRY_COMPARE(server.requestCount(), 1);
        QTRY_COMPARE(clock.pendingCount(), 1);

        const auto isOver = [&future] { return future.wait_for(0s) == std::future_status::ready; };
        int elapsed = 0;
        for (; !isOver() && elapsed < 100; elapsed += 2) {
            const int readCount = clock.readCount();
            if (drips)
                server.resume(1);
            QTRY_VERIFY(!drips || clock.readCount() > readCount || isOver());
            clock.advance(2s);
            QTRY_VERIFY(clock.pendingCount() == 1 || isOver());
        }
        QTEST(elapsed, "seconds");
        const Outcome seen = future.get();
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, URLError::Code::TimedOut);
    }

    void cutsOffALargeBody_data()
    {
        QTest::addColumn<RawServer::Answer>("answer");
        QTest::addColumn<std::optional<qint64>>("ownLimit"); // of the request
        QTest::addColumn<bool>("fits");
        const std::optional<qint64> none;
        QTest::newRow("as large as allowed") << plain(QByteArray(1000, 'x')) << none << true;
        QTest::newRow("one byte more") << plain(QByteArray(1001, 'x')) << none << false;
        QTest::newRow("without a length") << chunked(QByteArray(1001, 'x')) << none << false;
        QTest::newRow("as large as the request allows")
            << plain(QByteArray(10, 'x')) << std::optional<qint64>(10) << true;
        QTest::newRow("larger than that") << chunked(QByteArray(11, 'x')) << std::optional<qint64>(10) << false;
        QTest::newRow("allowed by the request alone")
            << plain(QByteArray(1001, 'x')) << std::optional<qint64>(2000) << false;
        RawServer::Answer announced = plain("x");
        announced.headers = {{"Content-Length", "4000000000"}};
        QTest::newRow("announced, not sent") << announced << none << false;
    }
    void cutsOffALargeBody()
    {
        QFETCH(RawServer::Answer, answer);
        QFETCH(std::optional<qint64>, ownLimit);
        QFETCH(bool, fits);
        RawServer server;
        server.setAnswer(answer);
        URLSession session({.maximumBodySize = 1000});
        URLRequest request = get(server.url());
        request.maximumBodySize = ownLimit;
        const Outcome seen = outcome(session, request);
        QCOMPARE(seen.data.has_value(), fits);
        if (!fits)
            QCOMPARE(seen.error->code, URLError::Code::TooLarge);
    }

    // An answer that comes without a pause is cut off on its way, not at its end.
    void cutsOffAFastBody()
    {
        RawServer::Answer endless = chunked({});
        endless.body = ("8000\r\n" + QByteArray(0x8000, 'x') + "\r\n").repeated(4000);
        RawServer server;
        server.setAnswer(endless);
        URLSession session({.maximumBodySize = 1 << 20});
        const Outcome seen = outcome(session, get(server.url()));
        QVERIFY(seen.error);
        QCOMPARE(seen.error->code, URLError::Code::TooLarge);
        QVERIFY2(server.sentSize() < endless.body.size() / 2, qPrintable(QString::number(server.sentSize())));
    }

    void reportsALostConnection_data()
    {
        QTest::addColumn<RawServer::Answer>("answer");
        using Stage = RawServer::Stage;
        const auto row = [](const char *name, RawServer::Answer answer, Stage stage, int status = 200) {
            answer.status = status;
            answer.stage = stage;
            answer.then = RawServer::Then::Close;
            QTest::newRow(name) << answer;
        };
        const QByteArray body(64, 'x');
        RawServer::Answer compressed = plain(qCompress(QByteArray(100, 'x') + "a few more letters").sliced(4));
        compressed.headers.emplaceBack("Content-Encoding", "deflate");
        row("no answer", plain(body), Stage::Nothing);
        row("after the head", plain(body), Stage::Head);
        row("in the body", plain(body), Stage::HalfBody);
        row("in the body of an error", plain(body), Stage::HalfBody, 500);
        row("in a compressed body", compressed, Stage::HalfBody);
    }
    void reportsALostConnection()
    {
        QFETCH(RawServer::Answer, answer);
        RawServer server;
        server.setAnswer(answer);
        URLSession session({});
        const Outcome seen = outcome(session, get(server.url()));
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, URLError::Code::ConnectionLost);
    }

    void keepsConnectionsButNoCookies()
    {
        RawServer server;
        RawServer::Answer answer = plain("x");
        answer.headers = {{"Set-Cookie", "a=b"}, {"Cache-Control", "max-age=1000"}};
        server.setAnswer(answer);
        URLSession session({});
        for (int i = 0; i < 3; ++i)
            outcome(session, get(server.url()));
        QCOMPARE(server.requestCount(), 3);
        QCOMPARE(server.connectionCount(), 1);
        QVERIFY(!server.requests().constLast().headers.contains("cookie"));
    }

    void endsRequestsWithTheSession()
    {
        RawServer server;
        server.setAnswer(RawServer::Answer::stall(RawServer::Stage::HalfBody));
        std::atomic<int> calls = 0;
        {
            URLSession session({});
            for (int i = 0; i < 3; ++i)
                session.dataTask(get(server.url()), [&calls](const auto &, const auto &, const auto &) { ++calls; });
            QTRY_COMPARE(server.requestCount(), 3);
        }
        QCOMPARE(calls, 0);
    }

    void endsInsideACompletion()
    {
        RawServer server;
        server.setHandler([](const RawServer::Request &request) {
            return request.target == "/stall" ? RawServer::Answer::stall() : plain("x");
        });
        auto session = std::make_unique<URLSession>(URLSession::Configuration());
        std::atomic<int> calls = 0;
        const auto witness = std::make_shared<int>();
        session->dataTask(get(server.url(u"/stall"_s)),
                          [&calls, witness](const auto &, const auto &, const auto &) { ++calls; });
        QTRY_COMPARE(server.requestCount(), 1);
        std::atomic<bool> isGone = false;
        session->dataTask({}, [&session, &isGone](const auto &, const auto &, const auto &) {
            session.reset();
            isGone = true;
        });
        QTRY_VERIFY(isGone);
        QTRY_COMPARE(witness.use_count(), 1);
        QCOMPARE(calls, 0);
    }
};

QTEST_GUILESS_MAIN(tst_URLSession)
#include "tst_URLSession.moc"
