#include "SessionTest.h"
#include "support/Table.h"

#include <algorithm>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using Platform::URLError;
using Platform::URLRequest;
using Platform::URLResponse;
using Platform::URLSession;

class tst_URLSession : public SessionTest
{
    Q_OBJECT

private Q_SLOTS:
    void givesAnyStatusWithItsBody_data()
    {
        addColumns<int, RawServer::Answer>("status", "answer");
        for (const int status : {200, 206, 300, 304, 400, 403, 404, 405, 409, 410, 418, 429, 500, 501, 502, 503, 504}) {
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
        answer.status = status;
        m_server->setAnswer(answer);
        const Outcome seen = outcome(*m_session, get(m_server->url()));
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
            const Outcome seen = outcome(*m_session, get(QLatin1StringView(url)));
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
        m_server->setAnswer(RawServer::Answer::redirect(location));
        const Outcome seen = outcome(*m_session, get(m_server->url()));
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, code);
        QVERIFY(m_server->requestCount() <= 20);
    }

    void makesTheBestOfOddAnswers_data()
    {
        addColumns<QByteArray, QByteArray>("answer", "data");
        const auto row = [](const char *name, const QByteArray &answer, const QByteArray &data = "none") {
            QTest::newRow(name) << answer << data;
        };
        const QByteArray start = "HTTP/1.1 200 OK\r\n";
        row("no HTTP", "220 mail.example ESMTP\r\n");
        row("bytes", QByteArray(100, '\0'));
        row("informational first", "HTTP/1.1 100 Continue\r\n\r\n" + start + "Content-Length: 2\r\n\r\nok", "ok");
        row("old", "HTTP/1.0 200 OK\r\n\r\nok", "ok");
        row("length below zero", start + "Content-Length: -5\r\n\r\nok", "ok");
        row("length beyond all numbers", start + "Content-Length: 99999999999999999999\r\n\r\nok", "ok");
        row("no length of a chunk", start + "Transfer-Encoding: chunked\r\n\r\nnone\r\nok\r\n", "");
        row("length of a chunk beyond all numbers",
            start + "Transfer-Encoding: chunked\r\n\r\nffffffffffffffffff\r\nok\r\n", "");
        row("chunk longer than said", start + "Transfer-Encoding: chunked\r\n\r\n1\r\nmuch more\r\n0\r\n\r\n", "m");
    }
    void makesTheBestOfOddAnswers()
    {
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, data);
        m_server->setAnswer({.head = answer, .then = RawServer::Then::Close});
        const Outcome seen = outcome(*m_session, get(m_server->url()));
        QCOMPARE(seen.data.value_or("none"), data);
        QVERIFY(seen.data.has_value() != seen.error.has_value());
    }

    // Older Qt takes some of these for the answer. What comes after them must not become the answer to the next
    // request.
    void survivesInterimAnswers_data()
    {
        QTest::addColumn<QByteArray>("head");
        QTest::newRow("101") << QByteArray(
            "HTTP/1.1 101 Switching Protocols\r\nUpgrade: x\r\nConnection: Upgrade\r\n\r\n");
        QTest::newRow("102") << QByteArray("HTTP/1.1 102 Processing\r\n\r\n");
        QTest::newRow("103") << QByteArray("HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\n");
    }
    void survivesInterimAnswers()
    {
        QFETCH(QByteArray, head);
        m_server->setAnswer({.head = head + "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nlate"});
        const Outcome seen = outcome(*m_session, get(m_server->url()));
        if (seen.error)
            QCOMPARE(seen.error->code, URLError::Code::Unknown);
        else
            QCOMPARE(seen.data.value(), "late");
        m_server->setAnswer(plain("next"));
        QCOMPARE(outcome(*m_session, get(m_server->url())).data.value_or("none"), "next");
    }

    void insistsOnSafety_data()
    {
        addColumns<QString, QStringList, bool>("certificate", "trusted", "isSafe");
        QTest::newRow("known") << u"loopback"_s << QStringList{u"loopback"_s} << true;
        QTest::newRow("of somebody unknown") << u"loopback"_s << QStringList{u"elsewhere"_s} << false;
        QTest::newRow("of another host") << u"elsewhere"_s << QStringList{u"elsewhere"_s, u"loopback"_s} << false;
        QTest::newRow("expired") << u"expired"_s << QStringList{u"expired"_s, u"loopback"_s} << false;
    }
    void insistsOnSafety()
    {
        QFETCH(QString, certificate);
        QFETCH(QStringList, trusted);
        QFETCH(bool, isSafe);
        std::ranges::for_each(trusted, trust);
        RawServer safe(security(certificate));
        safe.setAnswer(plain("secret"));
        for (int i = 0; i < manyRequests; ++i) {
            const Outcome seen = outcome(*m_session, get(safe.url()));
            QCOMPARE(seen.data.has_value(), isSafe);
            QVERIFY(isSafe || seen.error->code == URLError::Code::Secure);
        }
        if (!isSafe) {
            QCOMPARE(safe.requestCount(), 0);
            safe.setSecurity(security(u"loopback"_s));
            QCOMPARE(outcome(*m_session, get(safe.url())).data.has_value(), trusted.contains(u"loopback"_s));
            return;
        }
        safe.setAnswer(RawServer::Answer::redirect(m_server->url().toUtf8()));
        const Outcome lured = outcome(*m_session, get(safe.url()));
        QVERIFY(lured.error && lured.error->code == URLError::Code::Secure);
        QCOMPARE(m_server->requestCount(), 0);
    }

    // Which Qt would choose by itself.
    void speaksNoHttp2()
    {
        trust(u"loopback"_s);
        QSslConfiguration offering = security(u"loopback"_s);
        offering.setAllowedNextProtocols({"h2", "http/1.1"});
        RawServer server(offering);
        server.setAnswer(plain("body"));
        QCOMPARE(outcome(*m_session, get(server.url())).data, "body");
    }

    // A server that answers the greeting of TLS with something else.
    void failsWhereThereIsNoTLS_data()
    {
        addColumns<QByteArray, RawServer::Then>("greeting", "then");
        QTest::newRow("goes away") << QByteArray() << RawServer::Then::Close;
        QTest::newRow("resets") << QByteArray() << RawServer::Then::Reset;
        QTest::newRow("goes away within") << halfAGreeting() << RawServer::Then::Close;
        QTest::newRow("resets within") << halfAGreeting() << RawServer::Then::Reset;
        QTest::newRow("answers in the clear")
            << QByteArray("HTTP/1.1 400 Bad Request\r\nContent-Length: 0\r\n\r\n") << RawServer::Then::Close;
    }
    void failsWhereThereIsNoTLS()
    {
        QFETCH(QByteArray, greeting);
        QFETCH(RawServer::Then, then);
        trust(u"loopback"_s);
        RawServer safe(security(u"loopback"_s));
        safe.setAnswer(plain("secret"));
        safe.setGreeting(greeting, then);
        for (int i = 0; i < manyRequests; ++i) {
            const Outcome seen = outcome(*m_session, get(safe.url()));
            QVERIFY(!seen.data && seen.error);
        }
        safe.setGreeting({});
        QCOMPARE(dataOf(outcome(*m_session, get(safe.url()))), QByteArray("secret"));
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
            answer.then = RawServer::Then::Reset;
            QTest::addRow("%s, reset", name) << answer;
        };
        const QByteArray body(64, 'x');
        RawServer::Answer compressed = plain(qCompress(QByteArray(100, 'x') + "a few more letters").sliced(4));
        compressed.headers.emplaceBack("Content-Encoding", "deflate");
        row("no answer", plain(body), Stage::Nothing);
        row("in the head", plain(body), Stage::HalfHead);
        row("after the head", plain(body), Stage::Head);
        row("in the body", plain(body), Stage::HalfBody);
        row("in the body of an error", plain(body), Stage::HalfBody, 500);
        row("in a compressed body", compressed, Stage::HalfBody);
    }
    void reportsALostConnection()
    {
        QFETCH(RawServer::Answer, answer);
        m_server->setAnswer(answer);
        const Outcome seen = outcome(*m_session, get(m_server->url()));
        QVERIFY(!seen.data && seen.error);
        QCOMPARE(seen.error->code, URLError::Code::ConnectionLost);

        // Qt asks again for what it gets, but a photo is uploaded once.
        const int requestCount = m_server->requestCount();
        URLRequest upload = get(m_server->url());
        upload.method = URLRequest::Method::Post;
        upload.headers.insert("Content-Type", "image/jpeg");
        upload.body = QByteArray(5000, 'x');
        QVERIFY(outcome(*m_session, upload).error);
        QCOMPARE(m_server->requestCount(), requestCount + 1);
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
