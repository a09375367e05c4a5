#include "CallRecorder.h"
#include "support/ImageBombs.h"
#include "support/ManualClock.h"
#include "support/MatchKinds.h"
#include "support/MemoryWatch.h"
#include "support/RawServer.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include "Brevanto/ServerManager/ServiceAddress.h"

#include <QCoreApplication>
#include <QSysInfo>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const QByteArray separator = "\r\n--14737809831466499882746641449\r\n";
const QByteArray metaAnswer = R"({"status":{"code":0,"message":"Success"},"data":{"title":"T"}})";

QByteArray field(const QByteArray &name, const QByteArray &value)
{
    return "Content-Disposition: form-data; name=\"" + name + "\"\r\n\r\n" + value + separator;
}

QByteArray filePart(const QByteArray &name, const QByteArray &fileName, const QByteArray &bytes)
{
    return "Content-Disposition: form-data; name=\"" + name + "\"; filename=\"" + fileName
        + "\"Content-Type: application/octet-stream\r\n\r\n" + bytes + separator;
}

// Answers all four calls.
RawServer::Answer answerEverything(const RawServer::Request &request)
{
    if (request.target.startsWith("/ads/getAd"))
        return RawServer::Answer::json(metaAnswer);
    if (request.target.startsWith("/v3/shorten"))
        return RawServer::Answer::json(R"({"status_code":200,"status_txt":"OK","data":{"url":"http://s/1"}})");
    if (request.target == "/image/upload")
        return RawServer::Answer::json(R"({"status":{"code":0},"matches":[{"app_img":"a"}]})");
    RawServer::Answer answer;
    answer.body = TestImages::png(TestImages::quarters({4, 2}));
    return answer;
}

} // namespace

class tst_ServerCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_server = std::make_unique<RawServer>();
        m_server->setHandler(answerEverything);
        m_address = std::make_unique<ServiceAddress::Override>(m_server->url(QString()));
        m_recorder = std::make_unique<CallRecorder>();
        m_manager = BrevantoServerManager::create();
        m_memory.begin();
    }

    // Whatever happened, the memory of a phone was enough for it, and the next request works.
    void cleanup()
    {
        const qint64 growth = m_memory.growth();
        QVERIFY2(growth < 200 * MemoryWatch::mebibyte, QByteArray::number(growth));
        const qsizetype before = m_recorder->calls().size();
        m_server->setHandler(answerEverything);
        upload("jpeg");
        QTRY_COMPARE(m_recorder->calls().mid(before), QStringList{u"completion groups [1]"_s});
        m_manager.reset();
        m_recorder.reset();
        m_address.reset();
        m_server.reset();
    }

    void uploadsThePhotoByteForByte()
    {
        QCoreApplication::setApplicationVersion(u"2.3 b&1"_s);
        QByteArray photo = separator + QByteArray("\0\r\n--\xff\xd8%1\0", 10);
        for (int i = 0; i < 100000; ++i)
            photo += static_cast<char>(i * 7 % 256);

        upload(photo);
        QTRY_COMPARE(m_recorder->calls(), QStringList{u"completion groups [1]"_s});

        const RawServer::Request request = m_server->requests().constFirst();
        const QByteArray system = (QSysInfo::productType() + u"- "_s + QSysInfo::productVersion()).toUtf8();
        const QByteArray body = separator + field("appName", "Brevanto-2.3+b%261") + field("osName", system)
            + field("phoneModel", "Desktop") + field("username", "dummy")
            + filePart("uploadedfile", "image.jpg", photo);
        QCOMPARE(request.body.size(), body.size());
        QVERIFY(request.body == body);
        QVERIFY(request.raw.startsWith("POST /image/upload HTTP/1.1\r\n"));
        QVERIFY(request.raw.endsWith("\r\n\r\n" + body));
        QCOMPARE(request.headers.value("content-type"),
                 QByteArray("multipart/form-data; boundary=14737809831466499882746641449"));
        QCOMPARE(request.headers.value("content-length"), QByteArray::number(body.size()));
        QVERIFY(!request.headers.contains("transfer-encoding"));
        QVERIFY(!request.headers.contains("expect"));

        QCoreApplication::setApplicationVersion({});
        m_manager->postCapturedImageData("jpeg", nullptr, nullptr);
        QTRY_COMPARE(m_server->requestCount(), 2);
        QVERIFY(m_server->requests().constLast().body.contains(field("appName", "Brevanto-%28null%29")));
    }

    void postsBodies_data()
    {
        addColumns<bool, QByteArray, QByteArray, qint32, QByteArray, QByteArray>("withFields", "image", "file", "code",
                                                                                 "contentType", "body");
        const QByteArray multipart = "multipart/form-data; boundary=14737809831466499882746641449";
        const QByteArray form = "application/x-www-form-urlencoded";
        QTest::newRow("form") << true << QByteArray() << QByteArray() << 4 << form << QByteArray("k=\xc3\xa9&n=7");
        QTest::newRow("no fields") << false << QByteArray() << QByteArray() << 4 << form << QByteArray();
        QTest::newRow("log") << true << QByteArray() << QByteArray("line") << 3 << multipart
                             << separator + field("k", "\xc3\xa9") + filePart("log", "log.txt", "line");
        QTest::newRow("empty log") << false << QByteArray() << QByteArray("") << 3 << multipart
                                   << separator + filePart("log", "log.txt", "");
        QTest::newRow("image wins over log") << false << QByteArray("i") << QByteArray("l") << 4 << multipart
                                             << separator + filePart("uploadedfile", "image.jpg", "i");
        QTest::newRow("image of another call") << false << QByteArray("i") << QByteArray() << 0 << multipart
                                               << separator + filePart("(null)", "image.jpg", "i");
    }
    void postsBodies()
    {
        QFETCH(bool, withFields);
        QFETCH(QByteArray, image);
        QFETCH(QByteArray, file);
        QFETCH(qint32, code);
        const auto params = recordedParams();
        params->setPartialURL(u"post/here"_s);
        params->setApiRequestType(BrevantoAPIRequestTypePost);
        params->setApiRequestCode(code);
        if (withFields)
            params->setParamsDict(QVariantMap{{u"k"_s, u"é"_s}, {u"n"_s, 7}});
        if (!image.isNull())
            params->setImageData(image);
        if (!file.isNull())
            params->setFileData(file);
        m_manager->requestWithParams(params);
        QTRY_COMPARE(m_recorder->calls().size(), 1);
        const RawServer::Request request = m_server->requests().constFirst();
        QCOMPARE(request.method, QByteArray("POST"));
        QCOMPARE(request.target, QByteArray("/post/here"));
        QTEST(request.headers.value("content-type"), "contentType");
        QTEST(request.body, "body");
    }

    void addressesGets_data()
    {
        QTest::addColumn<QString>("partialURL");
        QTest::addColumn<QString>("path"); // of a complete address
        addColumns<QVariantMap, QByteArray>("params", "target");
        const QVariantMap one{{u"ad_id"_s, u"a+b%26%C3%A9"_s}};
        QTest::newRow("service") << u"ads/getAd"_s << QString() << one << QByteArray("/ads/getAd?ad_id=a+b%26%C3%A9");
        QTest::newRow("service, one slash in between")
            << u"/ads/getAd"_s << QString() << one << QByteArray("/ads/getAd?ad_id=a+b%26%C3%A9");
        QTest::newRow("service, empty dictionary")
            << u"ads/getAd"_s << QString() << QVariantMap() << QByteArray("/ads/getAd");
        QTest::newRow("service wins") << u"ads/getAd"_s << u"/other"_s << QVariantMap() << QByteArray("/ads/getAd");
        QTest::newRow("elsewhere") << QString() << u"/i/a.png?x=1&y=%2F#f"_s << QVariantMap()
                                   << QByteArray("/i/a.png?x=1&y=%2F");
        QTest::newRow("elsewhere, blank and umlaut")
            << QString() << u"/my ad/größe.png"_s << QVariantMap() << QByteArray("/my%20ad/gr%C3%B6%C3%9Fe.png");
        QTest::newRow("elsewhere, stray percent sign")
            << QString() << u"/100%/a.png"_s << QVariantMap() << QByteArray("/100%25/a.png");
    }
    void addressesGets()
    {
        QFETCH(QString, partialURL);
        QFETCH(QString, path);
        QFETCH(QVariantMap, params);
        const auto description = recordedParams();
        description->setPartialURL(partialURL);
        if (!path.isNull())
            description->setSeparateURL(m_server->url(path));
        description->setParamsDict(params);
        description->setApiRequestCode(BrevantoAPIRequestCodeImage);
        m_manager->apiCallWithParams(description);
        QTRY_COMPARE(m_recorder->calls().size(), 1);
        const RawServer::Request request = m_server->requests().constFirst();
        QCOMPARE(request.method, QByteArray("GET"));
        QTEST(request.target, "target");
        QVERIFY(!request.headers.contains("content-type"));
        QCOMPARE(request.body, QByteArray());
    }

    void completesOnTheSessionThread()
    {
        m_manager->getMeta(u"a b&c"_s, 0, m_recorder->completion<std::shared_ptr<BrevantoMatch>>(),
                           m_recorder->failure());
        m_manager->getImage(m_server->url(u"/a.png"_s), m_recorder->completion<Platform::Image>(),
                            m_recorder->failure());
        m_manager->getImage(u"ftp://nowhere"_s, m_recorder->completion<Platform::Image>(), m_recorder->failure());
        m_manager->getShortenedURLFor(u"http://long/?a b"_s, m_recorder->completion<QString>(), m_recorder->failure());
        upload("jpeg");
        QTRY_COMPARE(m_recorder->calls().size(), 5);
        QStringList calls = m_recorder->calls();
        calls.sort();
        QCOMPARE(calls,
                 QStringList({u"completion groups [1]"_s, u"completion image 4x2"_s, u"completion match T"_s,
                              u"completion url http://s/1"_s, u"failure UnsupportedURL"_s}));
        QCOMPARE(m_recorder->threads().size(), 1);
        QVERIFY(!m_recorder->threads().contains(QThread::currentThread()));

        QSet<QByteArray> targets;
        for (const RawServer::Request &request : m_server->requests())
            targets.insert(request.target);
        QVERIFY(targets.contains("/ads/getAd?ad_id=a+b%26c"));
        QVERIFY(targets.contains("/v3/shorten?access_token=3f9d27c1b6a04e58d2c7f1a9e0b3d6c85a2e4f71"
                                 "&longUrl=http%3A%2F%2Flong%2F%3Fa+b"));
    }

    void limitsAnswers_data()
    {
        addColumns<bool, int, int, QString>("isImage", "size", "status", "call");
        constexpr int mebibyte = 1024 * 1024;
        QTest::newRow("what is parsed") << false << 16 * mebibyte << 200 << u"completion groups [1]"_s;
        QTest::newRow("whatever its status") << false << 0 << 500 << u"completion groups [1]"_s;
        QTest::newRow("too much to parse") << false << 16 * mebibyte + 1 << 200 << u"failure TooLarge"_s;
        QTest::newRow("picture") << true << 16 * mebibyte << 200 << u"completion image 4x2"_s;
        QTest::newRow("picture too large") << true << 16 * mebibyte + 1 << 200 << u"failure TooLarge"_s;
    }
    void limitsAnswers()
    {
        QFETCH(bool, isImage);
        QFETCH(int, size);
        QFETCH(int, status);
        const QByteArray body = isImage ? TestImages::png(TestImages::quarters({4, 2}))
                                        : QByteArray(R"({"status":{"code":0},"matches":[{"app_img":"a"}]})");
        m_server->setAnswer({.status = status, .body = body.leftJustified(size, ' ')});
        if (isImage)
            m_manager->getImage(m_server->url(), m_recorder->completion<Platform::Image>(), m_recorder->failure());
        else
            upload("jpeg");
        QTRY_COMPARE(m_recorder->calls().size(), 1);
        QTEST(m_recorder->calls().constFirst(), "call");
    }

    void takesAnyAnswer_data()
    {
        addColumns<QByteArray, QByteArray, QString, QString>("type", "body", "upload", "image");
        const auto row = [](const char *name, const QByteArray &body, const char *upload,
                            const char *image = "failure nil", const QByteArray &type = "application/json") {
            QTest::newRow(name) << type << body << QString::fromLatin1(upload) << QString::fromLatin1(image);
        };
        const auto answer = [](const QByteArray &matches) -> QByteArray {
            return "{\"status\":{\"code\":0},\"matches\":" + matches + '}';
        };
        const auto list = [&answer](const QByteArray &element, int size) {
            return answer('[' + (element + ',').repeated(size).chopped(1) + ']');
        };
        row("other type", answer(R"([{"app_img":"a"}])"), "completion groups [1]", "failure nil", "image/png");
        row("type that is none", answer(R"([{"app_img":"a"}])"), "completion groups [1]", "failure nil", "\xff;;=");
        row("no UTF-8", answer("[{\"app_img\":\"a\xff\xc0\x80\"}]"), "failure nil");
        row("no objects", answer(R"([0, null, "a", [], true, {"app_img":"a"}])"), "completion groups [1]");
        row("numbers out of range", answer(R"([{"app_img":1e308,"xPercent":-1e308,"id":99999999999999999999}])"),
            "completion groups [1]");
        row("number beyond all", answer(R"([{"app_img":"a","xPercent":1e999}])"), "failure nil");
        row("nested", answer(QByteArray(100000, '[') + QByteArray(100000, ']')), "failure nil");
        row("nested in a field",
            answer("[{\"app_img\":\"a\",\"tag\":" + QByteArray(500, '[') + QByteArray(500, ']') + "}]"),
            "completion groups [1]");
        row("duplicate keys", R"({"status":{"code":1,"code":0},"matches":[],"matches":[{"app_img":"","app_img":"a"}]})",
            "completion groups [1]");
        QJsonArray matches;
        for (const QString &key : MatchKinds::keys()) {
            for (const auto value : MatchKinds::values()) {
                QJsonObject match{{u"app_img"_s, u"a"_s}};
                match[key] = value;
                matches.append(match);
            }
        }
        // What is no text or number names no ad, and what is one names another.
        const qsizetype rest = (MatchKinds::keys().size() - 1) * MatchKinds::values().size();
        row("every kind under every key", answer(QJsonDocument(matches).toJson()),
            "completion groups [" + QByteArray::number(rest) + ",1,1,1,1,1,1]");
        // As much as an answer may hold, and more.
        row("many matches", list(R"({"app_img":"a"})", 200'000), "completion groups [200000]");
        row("many records",
            answer("[{\"app_img\":\"a\",\"relatedVideos\":[" + QByteArray("0,").repeated(490'000) + "0]}]"),
            "completion groups [1]");
        row("matches without end", list("0", 4'000'000), "failure nil");
        row("records without end", answer("[{\"relatedVideos\":[" + QByteArray("0,").repeated(4'000'000) + "0]}]"),
            "failure nil");
        row("addresses without end",
            answer("[{\"app_img\":\"a\",\"ad_rel_img\":\"" + QByteArray(8'000'000, ',') + "\"}]"), "failure nil");
        row("addresses without end, escaped",
            answer("[{\"app_img\":\"a\",\"ad_rel_img\":\"" + QByteArray("\\u002c\\u002C").repeated(300'000) + "\"}]"),
            "failure nil");
        const QByteArray png = TestImages::png(TestImages::quarters({4, 2}));
        row("picture of another type", png, "failure nil", "completion image 4x2", "text/html");
        row("picture of 16 bits", TestImages::png(TestImages::quarters({4, 2}).convertToFormat(QImage::Format_RGBA64)),
            "failure nil", "completion image 4x2");
        row("picture in CMYK", TestImages::cmykJpeg(), "failure nil", "completion image 6x4");
        row("picture of no pixels", TestImages::emptyPng(), "failure nil");
        row("picture whose texts unpack to gigabytes", ImageBombs::pngWithTexts(900, false), "failure nil",
            "completion image 32x16");
        for (const bool isGzip : {false, true}) {
            const QByteArray encoding = isGzip ? "gzip" : "deflate";
            row("bytes that unpack to a gigabyte, " + encoding, ImageBombs::gigabyteOfSpaces(isGzip), "failure nil",
                "failure nil", "application/json\r\nContent-Encoding: " + encoding);
        }
    }
    void takesAnyAnswer()
    {
        QFETCH(QByteArray, type);
        QFETCH(QByteArray, body);
        m_server->setAnswer({.headers = {{"Content-Type", type}}, .body = body});
        upload("jpeg");
        QTRY_COMPARE_WITH_TIMEOUT(m_recorder->calls().size(), 1, 30000);
        QTEST(m_recorder->calls().constLast(), "upload");
        // Looked at like a screen does.
        m_manager->getImage(
            m_server->url(),
            [record = m_recorder->completion<Platform::Image>()](const Platform::Image &image) {
                image.upright({40, 40});
                record(image);
            },
            m_recorder->failure());
        QTRY_COMPARE_WITH_TIMEOUT(m_recorder->calls().size(), 2, 30000);
        QTEST(m_recorder->calls().constLast(), "image");
    }

    void failsWithTheTransportError()
    {
        for (const qint32 type : {BrevantoAPIRequestTypeGet, BrevantoAPIRequestTypePost}) {
            const auto params = recordedParams();
            params->setSeparateURL({});
            params->setApiRequestType(type);
            params->setApiRequestCode(BrevantoAPIRequestCodeImage);
            m_manager->apiCallWithParams(params);
            QTRY_COMPARE(m_recorder->calls().value(type), u"failure BadURL"_s);
        }
        m_server->setDoor(RawServer::Door::Closed);
        for (int i = 2; i < 9; ++i) { // more often than there are connections
            upload("jpeg");
            QTRY_COMPARE(m_recorder->calls().value(i), u"failure CannotConnect"_s);
        }
        m_server->setDoor(RawServer::Door::Open);
    }

    void timesOutAfterTenSeconds_data() { addBothRows("isUpload", "metadata", "upload"); }
    void timesOutAfterTenSeconds()
    {
        QFETCH(bool, isUpload);
        ManualClock clock;
        m_server->setAnswer(RawServer::Answer::stall());
        if (isUpload)
            upload("jpeg");
        else
            m_manager->getMeta(u"1"_s, 0, m_recorder->completion<std::shared_ptr<BrevantoMatch>>(),
                               m_recorder->failure());
        QTRY_COMPARE(m_server->requestCount(), 1);
        QTRY_COMPARE(clock.pendingCount(), 1);
        clock.advance(10s);
        QCOMPARE(clock.pendingCount(), 1);
        clock.advance(500ms);
        QTRY_COMPARE(m_recorder->calls(), QStringList{u"failure TimedOut"_s});
    }

    void callsBackAtOnceForEmptyInput()
    {
        for (const QString &empty : {QString(), u""_s}) {
            CallRecorder recorder;
            m_manager->getMeta(empty, 0, recorder.completion<std::shared_ptr<BrevantoMatch>>(), recorder.failure());
            m_manager->getImage(empty, recorder.completion<Platform::Image>(), recorder.failure());
            m_manager->getShortenedURLFor(empty, recorder.completion<QString>(), recorder.failure());
            QCOMPARE(recorder.calls(), QStringList({u"failure nil"_s, u"completion nil"_s, u"completion nil"_s}));
            m_manager->getMeta(empty, 0, nullptr, nullptr);
            m_manager->getImage(empty, nullptr, nullptr);
            m_manager->getShortenedURLFor(empty, nullptr, nullptr);
        }
        QCOMPARE(m_server->requestCount(), 0);
    }

    void callsNothing()
    {
        for (const qint32 type : {2, -1}) {
            auto params = recordedParams();
            params->setApiRequestType(type);
            params->setPartialURL(u"ads/getAd"_s);
            const std::weak_ptr<QuillfernServerParamsObject> isInUse = params;
            m_manager->requestWithParams(std::move(params));
            // The manager lets go of a description when it is done with it.
            QTRY_VERIFY(isInUse.expired());
        }
        QCOMPARE(m_server->requestCount(), 0);
        QCOMPARE(m_recorder->calls(), QStringList());
    }

    void asksTheNetworkEachTime()
    {
        for (int i = 1; i <= 2; ++i) {
            m_manager->getMeta(u"42"_s, 0, m_recorder->completion<std::shared_ptr<BrevantoMatch>>(),
                               m_recorder->failure());
            QTRY_COMPARE(m_recorder->calls().size(), i);
        }
        QCOMPARE(m_server->requestCount(), 2);
    }

private:
    std::shared_ptr<QuillfernServerParamsObject> recordedParams()
    {
        const auto params = std::make_shared<QuillfernServerParamsObject>();
        params->setCompletionBlock(m_recorder->completion<BrevantoServerResult>());
        params->setFailureBlock(m_recorder->failure());
        return params;
    }

    void upload(const QByteArray &photo)
    {
        m_manager->postCapturedImageData(photo, m_recorder->completion<std::optional<BrevantoMatchGroupList>>(),
                                         m_recorder->failure());
    }

    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ServiceAddress::Override> m_address;
    std::unique_ptr<CallRecorder> m_recorder;
    std::shared_ptr<BrevantoServerManager> m_manager;
    MemoryWatch m_memory;
};

QTEST_GUILESS_MAIN(tst_ServerCalls)
#include "tst_ServerCalls.moc"
