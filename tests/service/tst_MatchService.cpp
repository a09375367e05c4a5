// The service as its clients meet it: a real process, real sockets, well-behaved and hostile requests.

#include "support/ImageBombs.h"
#include "support/MemoryWatch.h"
#include "support/Table.h"
#include "support/TestImages.h"
#include "tests/service/ServiceProcess.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>
#include <QtTest/QTest>

#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace TestSupport;

class tst_MatchService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        m_service = std::make_unique<ServiceProcess>();
        QVERIFY(m_service->isListening());
        m_photo = reducedPhoto(QStringLiteral(MATCH_SERVICE_PHOTOS "/01-zumbaro-table.jpg"));
        QVERIFY(!m_photo.isEmpty());
    }

    void answersAnUploadWithTheRecordsOfTheAd()
    {
        for (const char *path : {"/image", "//image"}) { // with the slash that ends the base address, and without
            RawClient client(port());
            client.send(uploadRequest(uploadBody(m_photo)).replace("POST /image", QByteArray("POST ") + path));
            const HttpAnswer answer = client.receive();
            QCOMPARE(answer.status, 200);
            QCOMPARE(answer.code(), 0);
            const QJsonArray matches = answer.json().value(u"matches"_s).toArray();
            QVERIFY(matches.size() > 1);
            for (const QJsonValue &match : matches)
                QCOMPARE(match[u"app_img"_s].toString(), u"http://127.0.0.1/ads/zumbaro.jpg"_s);
        }
    }

    void buildsAddressesFromALoopbackHostOnly_data()
    {
        addColumns<QByteArray, QString>("host", "base");

        const QString own = u"http://127.0.0.1:%1/"_s.arg(port());
        QTest::newRow("name") << QByteArray("localhost:9000") << u"http://localhost:9000/"_s;
        QTest::newRow("other loopback address") << QByteArray("127.9.8.7:80") << u"http://127.9.8.7:80/"_s;
        QTest::newRow("version 6") << QByteArray("[::1]:81") << u"http://[::1]:81/"_s;
        QTest::newRow("elsewhere") << QByteArray("ads.example:80") << own;
        QTest::newRow("looks like loopback") << QByteArray("127.0.0.1.example") << own;
        QTest::newRow("user part") << QByteArray("127.0.0.1@ads.example") << own;
        QTest::newRow("path") << QByteArray("127.0.0.1/elsewhere") << own;
        QTest::newRow("not a host") << QByteArray("\"<>") << own;
    }
    void buildsAddressesFromALoopbackHostOnly()
    {
        QFETCH(QByteArray, host);
        QFETCH(QString, base);
        RawClient client(port());
        client.send("GET /ads/getAd?ad_id=2001 HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
        const QJsonValue record = client.receive().json().value(u"data"_s);
        QCOMPARE(record[u"app_img"_s].toString(), QString(base + u"ads/velkesta.jpg"_s));
        QCOMPARE(record[u"image_catalouge"_s][0][u"img"_s].toString(), QString(base + u"images/velkesta-mint.jpg"_s));
    }

    void refusesBadUploads_data()
    {
        QTest::addColumn<QByteArray>("request");

        const QByteArray good = uploadBody(m_photo);
        const auto changed = [&good](const char *before, const char *after) {
            return uploadRequest(QByteArray(good).replace(before, after));
        };
        QTest::newRow("empty body") << uploadRequest({});
        QTest::newRow("no photo") << uploadRequest(uploadBody({}));
        QTest::newRow("photo is text") << uploadRequest(uploadBody("not a photo"));
        QTest::newRow("photo is cut off in its header") << uploadRequest(uploadBody(m_photo.left(60)));
        QTest::newRow("other boundary in the body") << changed("14737809831466499882746641449", "X");
        QTest::newRow("other boundary in the header") << uploadRequest(good).replace("boundary=1473", "boundary=1474");
        QTest::newRow("no content type") << uploadRequest(good).replace("Content-Type: multipart", "X-Type: multipart");
        QTest::newRow("regular file part") << changed("image.jpg\"Content-Type", "image.jpg\"\r\nContent-Type");
        QTest::newRow("closing delimiter") << uploadRequest(good.chopped(2) + "--\r\n");
        QTest::newRow("no last separator") << uploadRequest(good.chopped(35));
        QTest::newRow("no first line end") << uploadRequest(good.mid(2));
        QTest::newRow("other file field") << changed("uploadedfile", "(null)");
        QTest::newRow("a field is missing") << changed("\"osName\"", "\"username\"");
        QTest::newRow("unknown field") << changed("\"osName\"", "\"other\"");
        QTest::newRow("unfinished field") << uploadRequest(good.left(100));

        // A small file whose header claims 60,000 by 60,000 pixels.
        QByteArray bomb = m_photo;
        bomb.replace(bomb.indexOf("\xff\xc0") + 5, 4, "\xea\x60\xea\x60");
        QTest::newRow("huge dimensions") << uploadRequest(uploadBody(bomb));
        QTest::newRow("no JPEG") << uploadRequest(uploadBody(ImageBombs::pngWithTexts(100, false)));
        QTest::newRow("comments without end")
            << uploadRequest(uploadBody(ImageBombs::jpegWithComments(1'000'000, false)));
        QTest::newRow("scans without end") << uploadRequest(uploadBody(ImageBombs::jpegOfScans(2000, 10'000)));
    }
    void refusesBadUploads()
    {
        QFETCH(QByteArray, request);
        RawClient client(port());
        client.send(request);
        const HttpAnswer answer = client.receive();
        QCOMPARE(answer.status, 400);
        QVERIFY(answer.code() > 0);
        QVERIFY(!answer.json().value(u"status"_s)[u"message"_s].toString().isEmpty());
        QVERIFY(!answer.json().contains(u"matches"_s));
    }

    void refusesALargeBody()
    {
        for (const QByteArray &rest : {QByteArray("Content-Length: 4194305\r\n\r\n"), // before it is read
                                       "Transfer-Encoding: chunked\r\n\r\n400001\r\n" + QByteArray(4194305, 'x')}) {
            RawClient client(port());
            client.send("POST /image/upload HTTP/1.1\r\nHost: 127.0.0.1\r\n" + rest);
            const HttpAnswer answer = client.receive();
            QCOMPARE(answer.status, 413);
            QCOMPARE(answer.code(), 413);
        }
    }

    void givesOutAdData()
    {
        // By a record's id, a number or a text, and by the name of an ad.
        for (const auto &[id, title] :
             std::initializer_list<std::pair<const char *, const char *>>{{"412", "Klozzo castle"},
                                                                          {"humlo-battery", "Forty hours"},
                                                                          {"humlo%2Dbattery", "Forty hours"},
                                                                          {"ostrelle", "Ostrelle eau du soir"}}) {
            const HttpAnswer answer = get(port(), QByteArray("/ads/getAd?ad_id=") + id);
            QCOMPARE(answer.code(), 0);
            QCOMPARE(answer.json().value(u"status"_s)[u"message"_s].toString(), u"Ad data"_s);
            QCOMPARE(answer.json().value(u"data"_s)[u"title"_s].toString(), QLatin1StringView(title));
        }
    }

    void refusesUnknownAddresses()
    {
        for (const auto &[request, status] :
             std::initializer_list<std::pair<const char *, int>>{{"GET /", 404},
                                                                 {"GET /ads/getAd?ad_id=none", 404},
                                                                 {"GET /ads/getAd", 404},
                                                                 {"GET /images/none.jpg", 404},
                                                                 {"GET /images/", 404},
                                                                 {"GET /ads/zumbaro.json", 404},
                                                                 {"GET /s/0000000000", 404},
                                                                 {"GET /image/upload", 405},
                                                                 {"POST /ads/getAd", 405},
                                                                 {"DELETE /ads/zumbaro.jpg", 405}}) {
            RawClient client(port());
            client.send(QByteArray(request) + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
            const HttpAnswer answer = client.receive();
            QVERIFY2(answer.status == status && answer.code() == status, request);
        }
    }

    void keepsToItsFolder()
    {
        QTemporaryDir folder;
        const QDir root(folder.path());
        QVERIFY(root.mkpath(u"catalogue/ads"_s) && root.mkpath(u"catalogue/images"_s));
        for (const char *path : {"secret.jpg", "catalogue/images/.hidden.jpg", "catalogue/images/open.jpg"}) {
            QFile file(root.filePath(QString::fromLatin1(path)));
            QVERIFY(file.open(QIODevice::WriteOnly) && file.write("secret") == 6);
        }
        QVERIFY(QFile::link(root.filePath(u"secret.jpg"_s), root.filePath(u"catalogue/images/link.jpg"_s)));
        QVERIFY(QFile::link(root.path(), root.filePath(u"catalogue/images/out"_s)));

        const ServiceProcess service({}, root.filePath(u"catalogue"_s));
        QCOMPARE(get(service.port(), "/images/open.jpg").status, 200);
        for (const char *target :
             {"/../secret.jpg", "/images/../../secret.jpg", "/%2e%2e/secret.jpg", "/images/..%2f..%2fsecret.jpg",
              "/%252e%252e/secret.jpg", "/..%5csecret.jpg", "/../secret.jpg%00.jpg", "/images/link.jpg",
              "/images/out/secret.jpg", "/images/.hidden.jpg"}) {
            const HttpAnswer answer = get(service.port(), target);
            QVERIFY2(answer.status == 404 && !answer.body.contains("secret"), target);
        }
    }

    void answersByteRanges_data()
    {
        addColumns<QByteArray, int, qint64, qint64>("range", "status", "first", "length");

        const qint64 size = QFile(QStringLiteral(MATCH_SERVICE_CATALOGUE "/media/velkesta-ride.mp4")).size();
        QTest::newRow("beginning") << QByteArray("bytes=0-99") << 206 << qint64(0) << qint64(100);
        QTest::newRow("middle") << QByteArray("bytes=1000-1000") << 206 << qint64(1000) << qint64(1);
        QTest::newRow("to the end") << QByteArray("bytes=1000-") << 206 << qint64(1000) << size - 1000;
        QTest::newRow("beyond the end") << QByteArray("bytes=1000-99999999") << 206 << qint64(1000) << size - 1000;
        QTest::newRow("last bytes") << QByteArray("bytes=-10") << 206 << size - 10 << qint64(10);
        QTest::newRow("more last bytes than there are") << QByteArray("bytes=-99999999") << 206 << qint64(0) << size;
        QTest::newRow("starts at the end")
            << "bytes=" + QByteArray::number(size) + "-" << 416 << qint64(0) << qint64(0);
        QTest::newRow("number too large")
            << QByteArray("bytes=99999999999999999999999-") << 416 << qint64(0) << qint64(0);
        QTest::newRow("backwards") << QByteArray("bytes=5-2") << 200 << qint64(0) << size;
        QTest::newRow("several") << QByteArray("bytes=0-1,5-6") << 200 << qint64(0) << size;
        QTest::newRow("other unit") << QByteArray("lines=0-1") << 200 << qint64(0) << size;
    }
    void answersByteRanges()
    {
        QFETCH(QByteArray, range);
        QFETCH(int, status);
        QFETCH(qint64, first);
        QFETCH(qint64, length);
        QFile file(QStringLiteral(MATCH_SERVICE_CATALOGUE "/media/velkesta-ride.mp4"));
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray content = file.readAll();

        const HttpAnswer answer = get(port(), "/media/velkesta-ride.mp4", "Range: " + range + "\r\n");
        QCOMPARE(answer.status, status);
        QCOMPARE(answer.headers.value("content-type"), QByteArray("video/mp4"));
        QCOMPARE(answer.body, content.mid(first, length));
        if (status == 206) {
            QCOMPARE(answer.headers.value("content-range"),
                     "bytes " + QByteArray::number(first) + '-' + QByteArray::number(first + length - 1) + '/'
                         + QByteArray::number(content.size()));
        }
    }

    void answersHeadWithoutABody()
    {
        RawClient client(port());
        client.send("HEAD /media/nattlund-theme.wav HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        const HttpAnswer answer = client.receive(true);
        QCOMPARE(answer.status, 200);
        QVERIFY(answer.headers.value("content-length").toLongLong() > 0);
        QCOMPARE(answer.headers.value("accept-ranges"), QByteArray("bytes"));
        client.send("GET /pages/humlo.html HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        QVERIFY(client.receive().body.startsWith("<!DOCTYPE html>"));
    }

    void shortensAndRedirects()
    {
        const HttpAnswer answer =
            get(port(), "/v3/shorten?access_token=any&longUrl=https%3A%2F%2Fshop.example%2Fa%3Fb%3D1%262");
        QCOMPARE(answer.json().value(u"status_code"_s).toInt(), 200);
        QCOMPARE(answer.json().value(u"status_txt"_s).toString(), u"OK"_s);
        const QString link = answer.json().value(u"data"_s)[u"url"_s].toString();
        QVERIFY(link.startsWith(m_service->address()));
        const HttpAnswer redirect = get(port(), link.mid(m_service->address().size() - 1).toUtf8());
        QCOMPARE(redirect.status, 302);
        QCOMPARE(redirect.headers.value("location"), QByteArray("https://shop.example/a?b=1&2"));
    }

    void refusesToShorten()
    {
        for (const char *query :
             {"", "longUrl=http%3A%2F%2Fa.example", "access_token=any", "access_token=any&longUrl=hello",
              "access_token=any&longUrl=file%3A%2F%2F%2Fetc%2Fhosts",
              "access_token=any&longUrl=http%3A%2F%2Fa.example%2F%0D%0ASet-Cookie:a"}) {
            const QJsonObject answer = get(port(), QByteArray("/v3/shorten?") + query).json();
            QVERIFY2(answer.value(u"status_code"_s).toInt() == 500, query);
            QVERIFY2(answer.value(u"status_txt"_s).toString() != u"OK"_s, query);
        }
    }

    void keepsAConnectionForSeveralRequests()
    {
        RawClient client(port());
        for (int round = 0; round < 3; ++round) {
            client.send("GET /ads/getAd?ad_id=412 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
            QCOMPARE(client.receive().code(), 0);
            client.send(uploadRequest(uploadBody("not a photo")));
            QCOMPARE(client.receive().status, 400);
        }
        const QByteArray request = "GET /images/klozzo-gate.jpg HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n";
        client.send(request + request);
        const QByteArray picture = client.receive().body;
        QVERIFY(!picture.isEmpty());
        QCOMPARE(client.receive().body, picture);
    }

    void isNotHeldUpByStalledClients()
    {
        const ServiceProcess service({u"--timeout"_s, u"1"_s});
        RawClient silent(service.port());
        RawClient halfHeader(service.port());
        halfHeader.send("POST /image/upload HTTP/1.1\r\nHost: ");
        RawClient halfBody(service.port());
        halfBody.send(uploadRequest(uploadBody(m_photo)).chopped(500));
        QCOMPARE(get(service.port(), "/ads/getAd?ad_id=412").code(), 0);

        // Uploads beside each other, all of them recognised.
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < 4; ++i) {
            clients.push_back(std::make_unique<RawClient>(service.port()));
            clients.back()->send(uploadRequest(uploadBody(m_photo)));
        }
        for (const auto &client : clients)
            QVERIFY(!client->receive().json().value(u"matches"_s).toArray().isEmpty());
        QVERIFY(silent.isClosed());
        QVERIFY(halfHeader.isClosed());
        QVERIFY(halfBody.isClosed());
    }

    // Whoever sends a byte now and then is not silent, and is sent away all the same.
    void endsRequestsThatTrickle_data()
    {
        QTest::addColumn<QByteArray>("start");
        QTest::newRow("in the head") << QByteArray("GET / HTTP/1.1\r\nX: ");
        QTest::newRow("in the body") << QByteArray(
            "POST /image/upload HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 5000\r\n\r\n");
    }
    void endsRequestsThatTrickle()
    {
        QFETCH(QByteArray, start);
        const ServiceProcess service({u"--timeout"_s, u"1"_s, u"--connections"_s, u"1"_s});
        RawClient client(service.port());
        client.send(start);
        QVERIFY(client.trickle(QByteArray(600, 'x')));
        const auto serves = [&service] { return get(service.port(), "/ads/getAd?ad_id=412").code() == 0; };
        QVERIFY(QTest::qWaitFor(serves, 30000));
    }

    void endsAnswersThatAreTakenSlowly()
    {
        const QTemporaryDir catalogue;
        QVERIFY(QDir(catalogue.path()).mkpath(u"ads"_s));
        QFile file(catalogue.filePath(u"large.mp4"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.resize(4 * MemoryWatch::mebibyte));
        const ServiceProcess service({u"--timeout"_s, u"1"_s, u"--connections"_s, u"1"_s}, catalogue.path());
        RawClient client(service.port(), true);
        client.send("GET /large.mp4 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        const auto serves = [&] {
            client.sip();
            return get(service.port(), "/large.mp4", "Range: bytes=0-0\r\n").status == 206;
        };
        QVERIFY(!serves());
        QVERIFY(QTest::qWaitFor(serves, 30000));
    }

    // As many as are served at a time unless told otherwise, again and again on the same connections.
    void servesManyAtOnce()
    {
        const ServiceProcess service({u"--timeout"_s, u"600"_s});
        const QByteArray wide = TestImages::jpeg(TestImages::quarters({6000, 3900}));
        const QByteArray giant = uploadRequest(uploadBody(wide));
        const QByteArray tiny = uploadRequest(uploadBody(TestImages::jpeg(TestImages::quarters({1, 1}))));
        const QByteArray photo = uploadRequest(uploadBody(m_photo));
        const QByteArray none = uploadRequest(uploadBody("none"));
        const qint64 idle = service.memory();
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < 64; ++i)
            clients.push_back(std::make_unique<RawClient>(service.port()));
        qint64 first = 0;
        for (int round = 0; round < 2; ++round) {
            for (int i = 0; i < 64; ++i)
                clients[i]->send(i % 8 == 0 ? giant : i % 4 == 1 ? tiny : i % 4 == 2 ? none : photo);
            for (int i = 0; i < 64; ++i) {
                const HttpAnswer answer = clients[i]->receive();
                QCOMPARE(answer.code(), i % 4 == 2 ? 400 : 0);
                const bool isMatch = i % 8 != 0 && i % 4 != 1 && i % 4 != 2;
                QCOMPARE(!answer.json().value(u"matches"_s).toArray().isEmpty(), isMatch);
            }
            first = round == 0 ? service.memory() : first;
        }
        if (!MemoryWatch::isMeaningful)
            return;
        const qint64 growth = service.memory() - first;
        QVERIFY2(growth < 64 * MemoryWatch::mebibyte, QByteArray::number(growth));
        // A giant at a time for each core.
        const qint64 peak = service.peakMemory() - idle;
        const qint64 most = (64 + 160 * QThread::idealThreadCount()) * MemoryWatch::mebibyte;
        QVERIFY2(peak < most, QByteArray::number(peak));
    }

    void holdsTheBodiesOfAll()
    {
        const ServiceProcess service({u"--timeout"_s, u"600"_s});
        const QByteArray request = uploadRequest(uploadBody(QByteArray(4 * MemoryWatch::mebibyte - 1000, 'x')));
        const qint64 idle = service.memory();
        std::vector<std::unique_ptr<RawClient>> clients;
        for (int i = 0; i < 64; ++i) {
            clients.push_back(std::make_unique<RawClient>(service.port()));
            clients.back()->send(request.chopped(1));
        }
        for (const auto &client : clients)
            client->send(request.last(1));
        for (const auto &client : clients)
            QCOMPARE(client->receive().code(), 400);
        const qint64 peak = service.peakMemory() - idle;
        QVERIFY2(!MemoryWatch::isMeaningful || peak < (64 * 4 + 64) * MemoryWatch::mebibyte, QByteArray::number(peak));
    }

    void servesOnceConnectionsAreFreeAgain()
    {
        const ServiceProcess service({u"--timeout"_s, u"1"_s, u"--connections"_s, u"3"_s});
        std::vector<std::unique_ptr<RawClient>> idle;
        for (int i = 0; i < 8; ++i)
            idle.push_back(std::make_unique<RawClient>(service.port()));
        for (const auto &client : idle)
            QVERIFY(client->isClosed());
        // The service lets go of a connection a moment after its client sees it closed.
        QTRY_COMPARE_WITH_TIMEOUT(get(service.port(), "/ads/getAd?ad_id=412").code(), 0, 30000);
    }

    void survivesClientsThatGoAway()
    {
        ServiceProcess service;
        for (int i = 0; i < 10; ++i) {
            RawClient client(service.port());
            client.send(i % 2 ? uploadRequest(uploadBody(m_photo))
                              : QByteArray("GET /ads/zumbaro.jpg HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"));
        }
        RawClient open(service.port());
        open.send("GET /ads/getAd?ad_id=412 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
        QCOMPARE(open.receive().code(), 0);
        QCOMPARE(service.end(), 0); // when asked to, whoever is connected
    }

    void saysWhatIsWrongAtStart()
    {
        for (const QString &fault : {u"--catalogue /nowhere"_s, u"--port %1"_s.arg(port()), u"--port x"_s,
                                     u"--address 192.0.2.1"_s}) { // which another machine has
            QProcess process;
            const QStringList usual{u"--port"_s, u"0"_s, u"--cache"_s, QString()};
            process.start(QStringLiteral(MATCH_SERVICE_PROGRAM), usual + fault.split(u' '));
            QVERIFY(process.waitForFinished(60000));
            QCOMPARE(process.exitStatus(), QProcess::NormalExit);
            QVERIFY2(process.exitCode() == 1, qPrintable(fault));
            QVERIFY2(!process.readAllStandardError().isEmpty(), qPrintable(fault));
        }
    }

private:
    quint16 port() const { return m_service->port(); }

    std::unique_ptr<ServiceProcess> m_service;
    QByteArray m_photo;
};

QTEST_GUILESS_MAIN(tst_MatchService)

#include "tst_MatchService.moc"
