#include "Screens/ScreenWindow.h"
#include "support/FakeReachability.h"
#include "support/ManualClock.h"
#include "support/RawServer.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Platform/Foundation/NotificationCenter.h"
#include "Platform/Media/PlayerViewController.h"

#include <QAccessible>
#include <QFile>
#include <QSignalSpy>
#include <QTest>

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

} // namespace

class tst_PlayerViewController : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void playsToTheEndAndCloses_data();
    void playsToTheEndAndCloses();
    void answersTouchAndKeys();
    void saysWhatCannotBePlayed_data();
    void saysWhatCannotBePlayed();
    void closesAtAnyStage_data();
    void closesAtAnyStage();

private:
    Platform::PlayerViewController *shown() const
    {
        return qobject_cast<Platform::PlayerViewController *>(m_ad->presentedViewController());
    }
    QQuickItem *item(const QString &name) const { return shown()->view()->findChild<QQuickItem *>(name); }
    QString text(const QString &name) const { return item(name)->property("text").toString(); }
    bool isSeen(const QString &name) const { return item(name)->isVisible() && item(name)->opacity() > 0.9; }
    QColor middle() { return m_window->grab().pixelColor(195, 422); }

    std::unique_ptr<FakeReachability> m_network;
    std::unique_ptr<RawServer> m_server;
    std::unique_ptr<ScreenWindow> m_window;
    QPointer<BrevantoAdVC> m_ad;
};

void tst_PlayerViewController::init()
{
    m_network = std::make_unique<FakeReachability>();
    m_server = std::make_unique<RawServer>();
    m_server->setHandler(answer);
    m_window = std::make_unique<ScreenWindow>();
    auto ad = brevantoStoryboard().instantiate<BrevantoAdVC>(QStringLiteral("BrevantoAdVC"));
    m_ad = ad.get();
    m_window->push(std::move(ad));
}

void tst_PlayerViewController::cleanup()
{
    m_window.reset();
    m_server.reset();
    m_network.reset();
}

void tst_PlayerViewController::playsToTheEndAndCloses_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isVideo");
    QTest::addColumn<bool>("isSeekable"); // over the network, by the backend of this platform
    QTest::newRow("video") << QStringLiteral("velkesta-ride.webm") << true << false;
    QTest::newRow("sound") << QStringLiteral("nattlund-theme.wav") << false << true;
    QTest::newRow("compressed sound") << QStringLiteral("humlo-promo.ogg") << false << false;
}

void tst_PlayerViewController::playsToTheEndAndCloses()
{
    QFETCH(QString, name);
    QFETCH(bool, isVideo);
    QFETCH(bool, isSeekable);
    int ends = 0;
    QObject observer;
    Platform::NotificationCenter::defaultCenter().addObserver(
        &observer, Platform::AVPlayerItemDidPlayToEndTimeNotification, [&](const Platform::Notification &) { ++ends; });
    m_ad->openAvPlayerControllerWithUrl(m_server->url(u'/' + name));
    QVERIFY(shown());
    QTRY_VERIFY_WITH_TIMEOUT(shown() && !m_ad->isVisible() && shown()->player()->position() > 0, 20000);
    QVERIFY(shown()->player()->isPlaying() && !isSeen(QStringLiteral("waiting")));
    // The clip is short: it rests while the picture is taken.
    QTest::keyClick(m_window->window(), Qt::Key_Space);
    QTRY_VERIFY(!shown()->player()->isPlaying());
    QCOMPARE(isSeen(QStringLiteral("soundPicture")), !isVideo);
    QTRY_VERIFY(middle().lightness() > 40);
    QTRY_VERIFY(isSeen(QStringLiteral("playerBar")));
    m_window->grab(QStringLiteral("player-%1").arg(QLatin1StringView(QTest::currentDataTag())));

    if (isSeekable) {
        QTest::keyClick(m_window->window(), Qt::Key_Right);
        QTRY_COMPARE(text(QStringLiteral("remainingTime")), QStringLiteral("-0:00"));
        QTest::keyClick(m_window->window(), Qt::Key_Left);
        QTRY_COMPARE(text(QStringLiteral("elapsedTime")), QStringLiteral("0:00"));
        const QQuickItem *slider = item(QStringLiteral("positionSlider"));
        m_window->tap(slider->mapToScene(QPointF(slider->width() * 0.85, slider->height() / 2)));
        QTRY_VERIFY(shown()->player()->position() > shown()->player()->duration() * 3 / 4);
    }
    QCOMPARE(ends, 0);
    m_window->tap(item(QStringLiteral("playButton")));
    QTRY_VERIFY_WITH_TIMEOUT(!shown(), 10000);
    QTRY_VERIFY(m_ad->isVisible());
    QCOMPARE(ends, 1);
}

void tst_PlayerViewController::answersTouchAndKeys()
{
    ManualClock clock;
    auto screen = std::make_unique<Platform::PlayerViewController>();
    screen->setPlayer(std::make_unique<Platform::Player>(QUrl(m_server->url(QStringLiteral("/zumbaro-press.webm")))));
    const QPointer<Platform::Player> player(screen->player());
    m_ad->present(std::move(screen), false);
    player->play();
    QTRY_VERIFY_WITH_TIMEOUT(player->hasVideo() && player->position() > 0, 20000);
    QVERIFY(isSeen(QStringLiteral("playerBar")));
    m_window->grab(QStringLiteral("player-controls"));

    clock.advance(3s);
    QTRY_VERIFY(!item(QStringLiteral("playerBar"))->isVisible());
    QVERIFY(!item(QStringLiteral("closeButton"))->isVisible());
    m_window->tap(QPointF(195, 300));
    QTRY_VERIFY(isSeen(QStringLiteral("playerBar")));

    // They stay while the video does not play.
    QTest::keyClick(m_window->window(), Qt::Key_Space);
    QTRY_VERIFY(!player->isPlaying());
    clock.advance(10s);
    QVERIFY(shown()->areControlsShown());
    const QAccessibleInterface *spoken = QAccessible::queryAccessibleInterface(item(QStringLiteral("playButton")));
    QCOMPARE(spoken->text(QAccessible::Name), QStringLiteral("Play"));

    m_window->tap(item(QStringLiteral("soundButton")));
    QTRY_VERIFY(player->isMuted());
    QTest::keyClick(m_window->window(), Qt::Key_Up);
    QTRY_VERIFY(!player->isMuted());
    m_window->tap(item(QStringLiteral("playButton")));
    QTRY_VERIFY(player->isPlaying());

    QTest::keyClick(m_window->window(), Qt::Key_Escape);
    QVERIFY(!player || !player->isPlaying());
    for (int i = 0; i < 10; ++i)
        clock.advance(100ms);
    QTRY_VERIFY(!player);
    QVERIFY(m_ad->isVisible());
}

void tst_PlayerViewController::saysWhatCannotBePlayed_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<QString>("text");
    const QString address = QStringLiteral("Its address is not one that can be played.");
    const QString loading = QStringLiteral("It could not be loaded.");
    QTest::newRow("missing") << QStringLiteral("/none.webm") << loading;
    QTest::newRow("does not decode") << QStringLiteral("/../make-media") << QString();
    QTest::newRow("nobody answers") << QStringLiteral("http://127.0.0.1:9/clip.webm") << loading;
    QTest::newRow("a file of the device") << QStringLiteral("file://" CLIPS "/velkesta-ride.webm") << address;
    QTest::newRow("unknown scheme") << QStringLiteral("rtsp://127.0.0.1/clip") << address;
    QTest::newRow("no address") << QStringLiteral("clip") << address;
}

void tst_PlayerViewController::saysWhatCannotBePlayed()
{
    QFETCH(QString, address);
    QFETCH(QString, text);
    m_server->setHandler([](const RawServer::Request &request) {
        return request.target.endsWith("make-media") ? RawServer::Answer{.body = QByteArray("no clip ").repeated(5000)}
                                                     : RawServer::Answer{.status = 404};
    });
    m_ad->openAvPlayerControllerWithUrl(address.startsWith(u'/') ? m_server->url(address) : address);
    QVERIFY(shown());
    QTRY_VERIFY_WITH_TIMEOUT(isSeen(QStringLiteral("playerError")), 20000);
    const QString said = item(QStringLiteral("playerErrorText"))->property("text").toString();
    QVERIFY(text.isEmpty() ? !said.isEmpty() : said == text);
    QTRY_VERIFY(!isSeen(QStringLiteral("waiting")) && !item(QStringLiteral("playerBar"))->isVisible());
    QTRY_VERIFY(shown()->isVisible() && !m_ad->isVisible());
    m_window->grab(QStringLiteral("player-error"));
    // Nothing goes on playing behind the text.
    QCoreApplication::processEvents();
    QVERIFY(!QSignalSpy(shown()->player(), &Platform::Player::positionChanged).wait(300));
    m_window->tap(item(QStringLiteral("closeButton")));
    QTRY_VERIFY(!shown());
    QTRY_VERIFY(m_ad->isVisible());
}

void tst_PlayerViewController::closesAtAnyStage_data()
{
    QTest::addColumn<RawServer::Stage>("stage");
    QTest::addColumn<bool>("isAtOnce");
    QTest::newRow("before anything") << RawServer::Stage::Nothing << true;
    QTest::newRow("asking") << RawServer::Stage::Nothing << false;
    QTest::newRow("head") << RawServer::Stage::Head << false;
    QTest::newRow("half") << RawServer::Stage::HalfBody << false;
    QTest::newRow("playing") << RawServer::Stage::Everything << false;
}

void tst_PlayerViewController::closesAtAnyStage()
{
    QFETCH(RawServer::Stage, stage);
    QFETCH(bool, isAtOnce);
    m_server->setHandler([stage](const RawServer::Request &request) {
        RawServer::Answer whole = answer(request);
        whole.stage = stage;
        return whole;
    });
    m_ad->openAvPlayerControllerWithUrl(m_server->url(QStringLiteral("/velkesta-ride.webm")));
    const QPointer<Platform::Player> player(shown()->player());
    if (isAtOnce) {
        m_ad->dismiss(false);
    } else {
        QTRY_VERIFY_WITH_TIMEOUT(m_server->requestCount() > 0 && shown()->isVisible() && !m_ad->isVisible(), 20000);
        if (stage == RawServer::Stage::Everything)
            QTRY_VERIFY(player->position() > 0);
        else if (stage != RawServer::Stage::HalfBody)
            m_window->grab(QStringLiteral("player-loading"));
        m_window->tap(item(QStringLiteral("closeButton")));
    }
    QTRY_VERIFY(!player);
    QTRY_VERIFY(m_ad->isVisible());
    m_server->resume();
}

QTEST_MAIN(tst_PlayerViewController)
#include "tst_PlayerViewController.moc"
