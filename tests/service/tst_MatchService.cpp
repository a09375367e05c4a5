// The service as its clients meet it: a real process, real sockets, well-behaved and hostile requests.

#include "tests/service/ServiceProcess.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <memory>
#include <vector>

using namespace TestSupport;

class tst_MatchService : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void answersAnUploadWithTheRecordsOfTheAd();
    void acceptsAPathWithoutTheBaseSlash();
    void buildsAddressesFromALoopbackHostOnly_data();
    void buildsAddressesFromALoopbackHostOnly();
    void refusesBadUploads_data();
    void refusesBadUploads();
    void refusesALargeBodyBeforeItIsRead();
    void refusesALargeChunkedBodyOnceItIsLarge();
    void givesOutAdData_data();
    void givesOutAdData();
    void refusesUnknownAddresses_data();
    void refusesUnknownAddresses();
    void keepsToItsFolder_data();
    void keepsToItsFolder();
    void answersByteRanges_data();
    void answersByteRanges();
    void answersHeadWithoutABody();
    void shortensAndRedirects();
    void refusesToShorten_data();
    void refusesToShorten();
    void keepsAConnectionForSeveralRequests();
    void isNotHeldUpByStalledClients();
    void servesOnceConnectionsAreFreeAgain();
    void survivesClientsThatGoAway();
    void endsWhenAsked();
    void saysWhatIsWrongAtStart_data();
    void saysWhatIsWrongAtStart();

private:
    quint16 port() const { return m_service->port(); }

    std::unique_ptr<ServiceProcess> m_service;
    QByteArray m_photo;
};

void tst_MatchService::initTestCase()
{
    m_service = std::make_unique<ServiceProcess>();
    QVERIFY(m_service->isListening());
    m_photo = reducedPhoto(QStringLiteral(MATCH_SERVICE_PHOTOS "/01-zumbaro-table.jpg"));
    QVERIFY(!m_photo.isEmpty());
}

void tst_MatchService::answersAnUploadWithTheRecordsOfTheAd()
{
    const HttpAnswer answer = post(port(), uploadBody(m_photo));
    QCOMPARE(answer.status, 200);
    QCOMPARE(answer.code(), 0);
    const QJsonArray matches = answer.json().value(QStringLiteral("matches")).toArray();
    QVERIFY(matches.size() > 1);
    for (const QJsonValue &match : matches)
        QCOMPARE(match[QStringLiteral("app_img")].toString(), QStringLiteral("http://127.0.0.1/ads/zumbaro.jpg"));
}

void tst_MatchService::acceptsAPathWithoutTheBaseSlash()
{
    RawClient client(port());
    client.send(uploadRequest(uploadBody(m_photo)).replace("POST /image", "POST //image"));
    QCOMPARE(client.receive().code(), 0);
}

void tst_MatchService::buildsAddressesFromALoopbackHostOnly_data()
{
    QTest::addColumn<QByteArray>("host");
    QTest::addColumn<QString>("base");

    const QString own = QStringLiteral("http://127.0.0.1:%1/").arg(port());
    QTest::newRow("name") << QByteArray("localhost:9000") << QStringLiteral("http://localhost:9000/");
    QTest::newRow("other loopback address") << QByteArray("127.9.8.7:80") << QStringLiteral("http://127.9.8.7:80/");
    QTest::newRow("version 6") << QByteArray("[::1]:81") << QStringLiteral("http://[::1]:81/");
    QTest::newRow("elsewhere") << QByteArray("ads.example:80") << own;
    QTest::newRow("looks like loopback") << QByteArray("127.0.0.1.example") << own;
    QTest::newRow("user part") << QByteArray("127.0.0.1@ads.example") << own;
    QTest::newRow("path") << QByteArray("127.0.0.1/elsewhere") << own;
    QTest::newRow("not a host") << QByteArray("\"<>") << own;
}

void tst_MatchService::buildsAddressesFromALoopbackHostOnly()
{
    QFETCH(QByteArray, host);
    QFETCH(QString, base);
    RawClient client(port());
    client.send("GET /ads/getAd?ad_id=2001 HTTP/1.1\r\nHost: " + host + "\r\n\r\n");
    const QJsonValue record = client.receive().json().value(QStringLiteral("data"));
    QCOMPARE(record[QStringLiteral("app_img")].toString(), QString(base + QStringLiteral("ads/velkesta.jpg")));
    QCOMPARE(record[QStringLiteral("image_catalouge")][0][QStringLiteral("img")].toString(),
             QString(base + QStringLiteral("images/velkesta-mint.jpg")));
}

void tst_MatchService::refusesBadUploads_data()
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
}

void tst_MatchService::refusesBadUploads()
{
    QFETCH(QByteArray, request);
    RawClient client(port());
    client.send(request);
    const HttpAnswer answer = client.receive();
    QCOMPARE(answer.status, 400);
    QVERIFY(answer.code() > 0);
    QVERIFY(!answer.json().value(QStringLiteral("status"))[QStringLiteral("message")].toString().isEmpty());
    QVERIFY(!answer.json().contains(QStringLiteral("matches")));
}

void tst_MatchService::refusesALargeBodyBeforeItIsRead()
{
    RawClient client(port());
    client.send("POST /image/upload HTTP/1.1\r\nHost: 127.0.0.1\r\nContent-Length: 16777217\r\n\r\n");
    const HttpAnswer answer = client.receive();
    QCOMPARE(answer.status, 413);
    QCOMPARE(answer.code(), 413);
}

void tst_MatchService::refusesALargeChunkedBodyOnceItIsLarge()
{
    RawClient client(port());
    client.send("POST /image/upload HTTP/1.1\r\nHost: 127.0.0.1\r\nTransfer-Encoding: chunked\r\n\r\n1000001\r\n"
                + QByteArray(16777217, 'x'));
    QCOMPARE(client.receive().status, 413);
}

void tst_MatchService::givesOutAdData_data()
{
    QTest::addColumn<QByteArray>("id");
    QTest::addColumn<QString>("title");
    QTest::newRow("number") << QByteArray("412") << QStringLiteral("Klozzo castle");
    QTest::newRow("text") << QByteArray("humlo-battery") << QStringLiteral("Forty hours");
    QTest::newRow("escaped") << QByteArray("humlo%2Dbattery") << QStringLiteral("Forty hours");
    QTest::newRow("name of the ad") << QByteArray("ostrelle") << QStringLiteral("Ostrelle eau du soir");
}

void tst_MatchService::givesOutAdData()
{
    QFETCH(QByteArray, id);
    QFETCH(QString, title);
    const HttpAnswer answer = get(port(), "/ads/getAd?ad_id=" + id);
    QCOMPARE(answer.code(), 0);
    QCOMPARE(answer.json().value(QStringLiteral("status"))[QStringLiteral("message")].toString(),
             QStringLiteral("Ad data"));
    QCOMPARE(answer.json().value(QStringLiteral("data"))[QStringLiteral("title")].toString(), title);
}

void tst_MatchService::refusesUnknownAddresses_data()
{
    QTest::addColumn<QByteArray>("request");
    QTest::addColumn<int>("status");
    QTest::newRow("root") << QByteArray("GET /") << 404;
    QTest::newRow("unknown ad") << QByteArray("GET /ads/getAd?ad_id=none") << 404;
    QTest::newRow("no ad") << QByteArray("GET /ads/getAd") << 404;
    QTest::newRow("unknown file") << QByteArray("GET /images/none.jpg") << 404;
    QTest::newRow("folder") << QByteArray("GET /images/") << 404;
    QTest::newRow("the records themselves") << QByteArray("GET /ads/zumbaro.json") << 404;
    QTest::newRow("unknown short link") << QByteArray("GET /s/0000000000") << 404;
    QTest::newRow("upload by GET") << QByteArray("GET /image/upload") << 405;
    QTest::newRow("POST elsewhere") << QByteArray("POST /ads/getAd") << 405;
    QTest::newRow("DELETE") << QByteArray("DELETE /ads/zumbaro.jpg") << 405;
}

void tst_MatchService::refusesUnknownAddresses()
{
    QFETCH(QByteArray, request);
    QFETCH(int, status);
    RawClient client(port());
    client.send(request + " HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    const HttpAnswer answer = client.receive();
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.code(), status);
}

void tst_MatchService::keepsToItsFolder_data()
{
    QTest::addColumn<QByteArray>("target");
    QTest::newRow("dots") << QByteArray("/../secret.jpg");
    QTest::newRow("dots in the middle") << QByteArray("/images/../../secret.jpg");
    QTest::newRow("encoded dots") << QByteArray("/%2e%2e/secret.jpg");
    QTest::newRow("encoded slash") << QByteArray("/images/..%2f..%2fsecret.jpg");
    QTest::newRow("encoded twice") << QByteArray("/%252e%252e/secret.jpg");
    QTest::newRow("backslash") << QByteArray("/..%5csecret.jpg");
    QTest::newRow("zero byte") << QByteArray("/../secret.jpg%00.jpg");
    QTest::newRow("link to a file") << QByteArray("/images/link.jpg");
    QTest::newRow("link to a folder") << QByteArray("/images/out/secret.jpg");
    QTest::newRow("hidden file") << QByteArray("/images/.hidden.jpg");
}

void tst_MatchService::keepsToItsFolder()
{
    QFETCH(QByteArray, target);
    QTemporaryDir folder;
    const QDir root(folder.path());
    QVERIFY(root.mkpath(QStringLiteral("catalogue/ads")) && root.mkpath(QStringLiteral("catalogue/images")));
    const auto write = [&root](const QString &path) {
        QFile file(root.filePath(path));
        return file.open(QIODevice::WriteOnly) && file.write("secret") == 6;
    };
    QVERIFY(write(QStringLiteral("secret.jpg")) && write(QStringLiteral("catalogue/images/.hidden.jpg")));
    QVERIFY(write(QStringLiteral("catalogue/images/open.jpg")));
    QVERIFY(QFile::link(root.filePath(QStringLiteral("secret.jpg")),
                        root.filePath(QStringLiteral("catalogue/images/link.jpg"))));
    QVERIFY(QFile::link(root.path(), root.filePath(QStringLiteral("catalogue/images/out"))));

    const ServiceProcess service({}, root.filePath(QStringLiteral("catalogue")));
    QCOMPARE(get(service.port(), "/images/open.jpg").status, 200);
    const HttpAnswer answer = get(service.port(), target);
    QCOMPARE(answer.status, 404);
    QVERIFY(!answer.body.contains("secret"));
}

void tst_MatchService::answersByteRanges_data()
{
    QTest::addColumn<QByteArray>("range");
    QTest::addColumn<int>("status");
    QTest::addColumn<qint64>("first");
    QTest::addColumn<qint64>("length");

    const qint64 size = QFile(QStringLiteral(MATCH_SERVICE_CATALOGUE "/media/velkesta-ride.webm")).size();
    QTest::newRow("beginning") << QByteArray("bytes=0-99") << 206 << qint64(0) << qint64(100);
    QTest::newRow("middle") << QByteArray("bytes=1000-1000") << 206 << qint64(1000) << qint64(1);
    QTest::newRow("to the end") << QByteArray("bytes=1000-") << 206 << qint64(1000) << size - 1000;
    QTest::newRow("beyond the end") << QByteArray("bytes=1000-99999999") << 206 << qint64(1000) << size - 1000;
    QTest::newRow("last bytes") << QByteArray("bytes=-10") << 206 << size - 10 << qint64(10);
    QTest::newRow("more last bytes than there are") << QByteArray("bytes=-99999999") << 206 << qint64(0) << size;
    QTest::newRow("starts at the end") << "bytes=" + QByteArray::number(size) + "-" << 416 << qint64(0) << qint64(0);
    QTest::newRow("number too large") << QByteArray("bytes=99999999999999999999999-") << 416 << qint64(0) << qint64(0);
    QTest::newRow("backwards") << QByteArray("bytes=5-2") << 200 << qint64(0) << size;
    QTest::newRow("several") << QByteArray("bytes=0-1,5-6") << 200 << qint64(0) << size;
    QTest::newRow("other unit") << QByteArray("lines=0-1") << 200 << qint64(0) << size;
}

void tst_MatchService::answersByteRanges()
{
    QFETCH(QByteArray, range);
    QFETCH(int, status);
    QFETCH(qint64, first);
    QFETCH(qint64, length);
    QFile file(QStringLiteral(MATCH_SERVICE_CATALOGUE "/media/velkesta-ride.webm"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray content = file.readAll();

    const HttpAnswer answer = get(port(), "/media/velkesta-ride.webm", "Range: " + range + "\r\n");
    QCOMPARE(answer.status, status);
    QCOMPARE(answer.headers.value("content-type"), QByteArray("video/webm"));
    QCOMPARE(answer.body, content.mid(first, length));
    if (status == 206) {
        QCOMPARE(answer.headers.value("content-range"),
                 "bytes " + QByteArray::number(first) + '-' + QByteArray::number(first + length - 1) + '/'
                     + QByteArray::number(content.size()));
    }
}

void tst_MatchService::answersHeadWithoutABody()
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

void tst_MatchService::shortensAndRedirects()
{
    const HttpAnswer answer =
        get(port(), "/v3/shorten?access_token=any&longUrl=https%3A%2F%2Fshop.example%2Fa%3Fb%3D1%262");
    QCOMPARE(answer.json().value(QStringLiteral("status_code")).toInt(), 200);
    QCOMPARE(answer.json().value(QStringLiteral("status_txt")).toString(), QStringLiteral("OK"));
    const QString link = answer.json().value(QStringLiteral("data"))[QStringLiteral("url")].toString();
    QVERIFY(link.startsWith(m_service->address()));
    const HttpAnswer redirect = get(port(), link.mid(m_service->address().size() - 1).toUtf8());
    QCOMPARE(redirect.status, 302);
    QCOMPARE(redirect.headers.value("location"), QByteArray("https://shop.example/a?b=1&2"));
}

void tst_MatchService::refusesToShorten_data()
{
    QTest::addColumn<QByteArray>("query");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("no token") << QByteArray("longUrl=http%3A%2F%2Fa.example");
    QTest::newRow("no address") << QByteArray("access_token=any");
    QTest::newRow("not an address") << QByteArray("access_token=any&longUrl=hello");
    QTest::newRow("other scheme") << QByteArray("access_token=any&longUrl=file%3A%2F%2F%2Fetc%2Fhosts");
    QTest::newRow("header in it") << QByteArray("access_token=any&longUrl=http%3A%2F%2Fa.example%2F%0D%0ASet-Cookie:a");
}

void tst_MatchService::refusesToShorten()
{
    QFETCH(QByteArray, query);
    const QJsonObject answer = get(port(), "/v3/shorten?" + query).json();
    QCOMPARE(answer.value(QStringLiteral("status_code")).toInt(), 500);
    QVERIFY(answer.value(QStringLiteral("status_txt")).toString() != QStringLiteral("OK"));
}

void tst_MatchService::keepsAConnectionForSeveralRequests()
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

void tst_MatchService::isNotHeldUpByStalledClients()
{
    const ServiceProcess service({QStringLiteral("--timeout"), QStringLiteral("1")});
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
        QVERIFY(!client->receive().json().value(QStringLiteral("matches")).toArray().isEmpty());
    QVERIFY(silent.isClosed());
    QVERIFY(halfHeader.isClosed());
    QVERIFY(halfBody.isClosed());
}

void tst_MatchService::servesOnceConnectionsAreFreeAgain()
{
    const ServiceProcess service(
        {QStringLiteral("--timeout"), QStringLiteral("1"), QStringLiteral("--connections"), QStringLiteral("3")});
    std::vector<std::unique_ptr<RawClient>> idle;
    for (int i = 0; i < 8; ++i)
        idle.push_back(std::make_unique<RawClient>(service.port()));
    for (const auto &client : idle)
        QVERIFY(client->isClosed());
    // The service lets go of a connection a moment after its client sees it closed.
    QTRY_COMPARE_WITH_TIMEOUT(get(service.port(), "/ads/getAd?ad_id=412").code(), 0, 30000);
}

void tst_MatchService::survivesClientsThatGoAway()
{
    for (int i = 0; i < 10; ++i) {
        RawClient client(port());
        client.send(i % 2 ? uploadRequest(uploadBody(m_photo))
                          : QByteArray("GET /ads/zumbaro.jpg HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n"));
    }
    QCOMPARE(get(port(), "/ads/getAd?ad_id=412").code(), 0);
}

void tst_MatchService::endsWhenAsked()
{
    ServiceProcess service;
    QVERIFY(service.isListening());
    RawClient open(service.port());
    open.send("GET /ads/getAd?ad_id=412 HTTP/1.1\r\nHost: 127.0.0.1\r\n\r\n");
    QCOMPARE(open.receive().code(), 0);
    QCOMPARE(service.end(), 0);
}

void tst_MatchService::saysWhatIsWrongAtStart_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("no catalogue") << QStringList{QStringLiteral("--catalogue"), QStringLiteral("/nowhere")};
    QTest::newRow("port in use") << QStringList{QStringLiteral("--port"), QString::number(port())};
    QTest::newRow("port is no number") << QStringList{QStringLiteral("--port"), QStringLiteral("x")};
    QTest::newRow("address of another machine")
        << QStringList{QStringLiteral("--address"), QStringLiteral("192.0.2.1")};
}

void tst_MatchService::saysWhatIsWrongAtStart()
{
    QFETCH(QStringList, arguments);
    QProcess process;
    process.start(QStringLiteral(MATCH_SERVICE_PROGRAM),
                  QStringList{QStringLiteral("--port"), QStringLiteral("0"), QStringLiteral("--cache"), QString()}
                      + arguments);
    QVERIFY(process.waitForFinished(60000));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 1);
    QVERIFY(!process.readAllStandardError().isEmpty());
}

QTEST_GUILESS_MAIN(tst_MatchService)

#include "tst_MatchService.moc"
