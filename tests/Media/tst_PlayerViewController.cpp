#include "Screens/ScreenTest.h"
#include "support/ManualClock.h"
#include "support/MemoryWatch.h"
#include "support/Table.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Media/PlayerViewController.h"

#include <QAccessible>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

QByteArray clip(const QString &name)
{
    QFile file(QStringLiteral(CLIPS "/%1").arg(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

RawServer::Answer answer(const RawServer::Request &request)
{
    const QString name = QString::fromLatin1(request.target.mid(request.target.lastIndexOf('/') + 1));
    const QByteArray content = clip(name);
    if (content.isEmpty())
        return {.status = 404};
    const QByteArray range = request.headers.value("range");
    const qsizetype from = range.startsWith("bytes=") ? range.mid(6, range.indexOf('-') - 6).toLongLong() : 0;
    const QByteArray size = QByteArray::number(content.size());
    RawServer::Answer answer{.headers = {{"Accept-Ranges", "bytes"}}};
    if (from >= content.size()) {
        answer.status = 416;
        answer.headers.append({"Content-Range", "bytes */" + size});
        return answer;
    }
    answer.body = content.mid(from);
    if (from > 0) {
        answer.status = 206;
        answer.headers.append(
            {"Content-Range",
             "bytes " + QByteArray::number(from) + '-' + QByteArray::number(content.size() - 1) + '/' + size});
    }
    return answer;
}

// The body again and again.
RawServer::Answer endless(const QByteArray &body)
{
    return {.body = body, .head = "HTTP/1.1 200 OK\r\n\r\n", .then = RawServer::Then::Repeat};
}

} // namespace

class tst_PlayerViewController : public ScreenTest
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        // As hosts are told to: with these, which not all machines have, playlists lead to files.
        qputenv("GST_PLUGIN_FEATURE_RANK", "hlsdemux:NONE,dashdemux:NONE,mssdemux:NONE");
        ScreenTest::init();
        m_server->setHandler(answer);
        openWindow();
        auto ad = makeScreen<BrevantoAdVC>();
        m_ad = ad.get();
        m_window->push(std::move(ad));
    }

    void playsToTheEndAndCloses_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("video") << u"velkesta-ride.mp4"_s;
        QTest::newRow("sound") << u"nattlund-theme.wav"_s;
        QTest::newRow("compressed sound") << u"humlo-promo.ogg"_s;
    }
    void playsToTheEndAndCloses()
    {
        QFETCH(QString, name);
        const bool isVideo = name.endsWith(u".mp4"_s);
        const bool isSeekable = !name.endsWith(u".ogg"_s); // over the network, by the backend of this platform
        int ends = 0;
        QObject observer;
        Platform::NotificationCenter::defaultCenter().addObserver(&observer,
                                                                  Platform::AVPlayerItemDidPlayToEndTimeNotification,
                                                                  [&](const Platform::Notification &) { ++ends; });
        m_ad->openAvPlayerControllerWithUrl(m_server->url(u'/' + name));
        QVERIFY(shown());
        QTRY_VERIFY_WITH_TIMEOUT(shown() && !m_ad->isVisible() && shown()->player()->position() > 0, 20000);
        QVERIFY(shown()->player()->isPlaying() && !isSeen(u"waiting"_s));
        // The clip is short: it rests while the picture is taken.
        QTest::keyClick(m_window->window(), Qt::Key_Space);
        QTRY_VERIFY(!shown()->player()->isPlaying());
        QCOMPARE(isSeen(u"soundPicture"_s), !isVideo);
        QTRY_VERIFY(middle().lightness() > 40);
        QTRY_VERIFY(isSeen(u"playerBar"_s));

        if (isSeekable) {
            QTRY_VERIFY(item(u"positionSlider"_s)->isEnabled());
            QTest::keyClick(m_window->window(), Qt::Key_Right);
            QTRY_COMPARE(text(u"remainingTime"_s), u"-0:00"_s);
            QTest::keyClick(m_window->window(), Qt::Key_Left);
            QTRY_COMPARE(text(u"elapsedTime"_s), u"0:00"_s);
            const QQuickItem *slider = item(u"positionSlider"_s);
            m_window->tap(slider->mapToScene(QPointF(slider->width() * 0.85, slider->height() / 2)));
            QTRY_VERIFY(shown()->player()->position() > shown()->player()->duration() * 3 / 4);
        }
        QCOMPARE(ends, 0);
        m_window->tap(item(u"playButton"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!shown(), 10000);
        QTRY_VERIFY(m_ad->isVisible());
        QCOMPARE(ends, 1);
    }

    void answersTouchAndKeys()
    {
        ManualClock clock;
        auto screen = std::make_unique<Platform::PlayerViewController>();
        screen->setPlayer(std::make_unique<Platform::Player>(QUrl(m_server->url(u"/zumbaro-press.mp4"_s))));
        const QPointer<Platform::Player> player(screen->player());
        m_ad->present(std::move(screen), false);
        player->play();
        QTRY_VERIFY_WITH_TIMEOUT(player->hasVideo() && player->position() > 0, 20000);
        QVERIFY(isSeen(u"playerBar"_s));

        clock.advance(3s);
        QTRY_VERIFY(!item(u"playerBar"_s)->isVisible());
        QVERIFY(!item(u"closeButton"_s)->isVisible());
        m_window->tap(QPointF(195, 300));
        QTRY_VERIFY(isSeen(u"playerBar"_s));

        // They stay while the video does not play.
        QTest::keyClick(m_window->window(), Qt::Key_Space);
        QTRY_VERIFY(!player->isPlaying());
        clock.advance(10s);
        QVERIFY(shown()->areControlsShown());
        const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item(u"playButton"_s));
        QCOMPARE(spoken->text(QAccessible::Name), u"Play"_s);

        m_window->tap(item(u"soundButton"_s));
        QTRY_VERIFY(player->isMuted());
        QTest::keyClick(m_window->window(), Qt::Key_Up);
        QTRY_VERIFY(!player->isMuted());
        m_window->tap(item(u"playButton"_s));
        QTRY_VERIFY(player->isPlaying());

        QTest::keyClick(m_window->window(), Qt::Key_Escape);
        QVERIFY(!player || !player->isPlaying());
        for (int i = 0; i < 10; ++i)
            clock.advance(100ms);
        QTRY_VERIFY(!player);
        QVERIFY(m_ad->isVisible());
    }

    void saysWhatCannotBePlayed_data()
    {
        addColumns<QString, QString>("address", "text");
        const QString address = u"Its address is not one that can be played."_s;
        const QString loading = u"It could not be loaded."_s;
        QTest::newRow("missing") << u"/none.webm"_s << loading;
        QTest::newRow("does not decode") << u"/../make-media"_s << QString();
        QTest::newRow("does not decode, and does not end") << u"/endless"_s << QString();
        QTest::newRow("nobody answers") << u"http://127.0.0.1:9/clip.webm"_s << loading;
        QTest::newRow("a file of the device") << QStringLiteral("file://" CLIPS "/velkesta-ride.mp4") << address;
        QTest::newRow("unknown scheme") << u"rtsp://127.0.0.1/clip"_s << address;
        QTest::newRow("no address") << u"clip"_s << address;
    }
    void saysWhatCannotBePlayed()
    {
        QFETCH(QString, address);
        QFETCH(QString, text);
        m_server->setHandler([](const RawServer::Request &request) {
            if (request.target == "/endless")
                return endless(QByteArray("no clip ").repeated(5000));
            return request.target.endsWith("make-media")
                ? RawServer::Answer{.body = QByteArray("no clip ").repeated(5000)}
                : RawServer::Answer{.status = 404};
        });
        m_ad->openAvPlayerControllerWithUrl(address.startsWith(u'/') ? m_server->url(address) : address);
        QVERIFY(shown());
        QTRY_VERIFY_WITH_TIMEOUT(isSeen(u"playerError"_s), 20000);
        const QString said = item(u"playerErrorText"_s)->property("text").toString();
        QVERIFY(text.isEmpty() ? !said.isEmpty() : said == text);
        QTRY_VERIFY(!isSeen(u"waiting"_s) && !item(u"playerBar"_s)->isVisible());
        QTRY_VERIFY(shown()->isVisible() && !m_ad->isVisible());
        // Nothing goes on playing behind the text.
        QCoreApplication::processEvents();
        QVERIFY(!QSignalSpy(shown()->player(), &Platform::Player::positionChanged).wait(300));
        m_window->tap(item(u"closeButton"_s));
        QTRY_VERIFY(!shown());
        QTRY_VERIFY(m_ad->isVisible());
    }

    void readsNoLocalFile_data()
    {
        addColumns<RawServer::Answer>("clip"); // "%1" stands for the file's address
        const auto playlist = [](const QByteArray &type, const QByteArray &body) {
            return RawServer::Answer{.headers = {{"Content-Type", type}}, .body = body};
        };
        const QByteArray hls = "application/vnd.apple.mpegurl";
        QTest::newRow("redirect") << RawServer::Answer::redirect("%1");
        QTest::newRow("list") << playlist("audio/x-mpegurl", "#EXTM3U\n#EXTINF:9,x\n%1\n");
        QTest::newRow("addresses") << playlist("text/uri-list", "%1\r\n");
        QTest::newRow("stream") << playlist(hls, "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXTINF:9,\n%1\n#EXT-X-ENDLIST\n");
        QTest::newRow("stream's key") << playlist(hls,
                                                  "#EXTM3U\n#EXT-X-TARGETDURATION:9\n#EXT-X-KEY:METHOD=AES-128,"
                                                  "URI=\"%1\"\n#EXTINF:9,\n/a.ts\n#EXT-X-ENDLIST\n");
        QTest::newRow("stream of streams")
            << playlist(hls, "#EXTM3U\n#EXT-X-STREAM-INF:BANDWIDTH=99999,CODECS=\"mp4a.40.2\"\n%1\n");
        QTest::newRow("manifest") << playlist(
            "application/dash+xml",
            "<?xml version=\"1.0\"?><MPD xmlns=\"urn:mpeg:dash:schema:mpd:2011\" type=\"static\" "
            "mediaPresentationDuration=\"PT9S\" minBufferTime=\"PT1S\" "
            "profiles=\"urn:mpeg:dash:profile:isoff-on-demand:2011\"><Period><AdaptationSet "
            "mimeType=\"video/mp4\"><Representation id=\"1\" bandwidth=\"99999\" codecs=\"avc1.4d401f\" "
            "width=\"90\" height=\"90\"><BaseURL>%1</BaseURL><SegmentList duration=\"9\">"
            "<SegmentURL media=\"%1\"/></SegmentList></Representation></AdaptationSet></Period></MPD>");
    }
    // What a server names in place of a clip, or within it.
    void readsNoLocalFile()
    {
        QFETCH(RawServer::Answer, clip);
        // Whoever opens a pipe waits for a writer, and one that comes finds the reader.
        QTemporaryDir folder;
        const QByteArray pipe = QFile::encodeName(folder.filePath(u"pipe.ts"_s));
        QCOMPARE(mkfifo(pipe.constData(), 0600), 0);
        clip.body.replace("%1", "file://" + pipe);
        for (auto &[name, value] : clip.headers)
            value.replace("%1", "file://" + pipe);
        m_server->setHandler([clip](const RawServer::Request &request) {
            return request.target == "/clip" ? clip : RawServer::Answer{.status = 404};
        });
        m_ad->openAvPlayerControllerWithUrl(m_server->url(u"/clip"_s));
        int writer = -1;
        const auto isRead = [&] { return (writer = ::open(pipe.constData(), O_WRONLY | O_NONBLOCK)) >= 0; };
        QVERIFY(QTest::qWaitFor([&] { return isRead() || isSeen(u"playerError"_s); }, 20000));
        if (writer >= 0)
            ::close(writer); // the reader meets the end of its file
        QCOMPARE(writer, -1);
    }

    void holdsLittleOfAnEndlessClip()
    {
        QByteArray sound = clip(u"nattlund-theme.wav"_s);
        sound.replace(sound.indexOf("data") + 4, 4, "\xff\xff\xff\x7f"); // its size
        m_server->setAnswer(endless(sound));
        const MemoryWatch memory;
        m_ad->openAvPlayerControllerWithUrl(m_server->url(u"/sound.wav"_s));
        QTRY_VERIFY_WITH_TIMEOUT(shown()->player()->position() > 3000, 30000);
        QVERIFY2(m_server->sentSize() < 32 * MemoryWatch::mebibyte, QByteArray::number(m_server->sentSize()));
        QVERIFY2(memory.growth() < 128 * MemoryWatch::mebibyte, QByteArray::number(memory.growth()));
        m_window->tap(item(u"closeButton"_s));
        QTRY_VERIFY(!shown());
        QTRY_VERIFY(m_ad->isVisible());
    }

    void closesAtAnyStage_data()
    {
        addColumns<RawServer::Stage, bool>("stage", "isAtOnce");
        QTest::newRow("before anything") << RawServer::Stage::Nothing << true;
        QTest::newRow("asking") << RawServer::Stage::Nothing << false;
        QTest::newRow("head") << RawServer::Stage::Head << false;
        QTest::newRow("half") << RawServer::Stage::HalfBody << false;
        QTest::newRow("playing") << RawServer::Stage::Everything << false;
    }
    void closesAtAnyStage()
    {
        QFETCH(RawServer::Stage, stage);
        QFETCH(bool, isAtOnce);
        m_server->setHandler([stage](const RawServer::Request &request) {
            RawServer::Answer whole = answer(request);
            whole.stage = stage;
            return whole;
        });
        m_ad->openAvPlayerControllerWithUrl(m_server->url(u"/velkesta-ride.mp4"_s));
        const QPointer<Platform::Player> player(shown()->player());
        if (isAtOnce) {
            m_ad->dismiss(false);
        } else {
            QTRY_VERIFY_WITH_TIMEOUT(m_server->requestCount() > 0 && shown()->isVisible() && !m_ad->isVisible(), 20000);
            if (stage == RawServer::Stage::Everything)
                QTRY_VERIFY(player->position() > 0);
            m_window->tap(item(u"closeButton"_s));
        }
        QTRY_VERIFY(!player);
        QTRY_VERIFY(m_ad->isVisible());
        m_server->resume();
    }

private:
    Platform::PlayerViewController *shown() const
    {
        return qobject_cast<Platform::PlayerViewController *>(m_ad->presentedViewController());
    }
    QQuickItem *item(const QString &name) const { return shown()->view()->findChild<QQuickItem *>(name); }
    QString text(const QString &name) const { return item(name)->property("text").toString(); }
    bool isSeen(const QString &name) const { return item(name)->isVisible() && item(name)->opacity() > 0.9; }
    QColor middle() { return m_window->grab().pixelColor(195, 422); }

    QPointer<BrevantoAdVC> m_ad;
};

QTEST_MAIN(tst_PlayerViewController)
#include "tst_PlayerViewController.moc"
