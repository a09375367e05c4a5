#include "ScreenWindow.h"
#include "support/FakeCamera.h"
#include "support/FakeReachability.h"
#include "support/RawServer.h"
#include "support/TestImages.h"

#include "Brevanto/BrevantoAdVC.h"
#include "Brevanto/BrevantoBundle.h"
#include "Brevanto/BrevantoCameraVC.h"
#include "Brevanto/BrevantoPhotoGalleryVC.h"
#include "Brevanto/ServerManager/ServiceAddress.h"
#include "Platform/Media/PlayerViewController.h"

#include <QFile>
#include <QProcess>
#include <QRandomGenerator>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>

#include <cstdio>
#include <cstdlib>

using namespace Qt::StringLiterals;

// The application ends in the midst of something. Copies of this program do.
class tst_Leaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leavesInTheMidst_data()
    {
        QTest::addColumn<QString>("midst");
        QTest::addColumn<QString>("end");
        for (const char *midst : {"animation", "request", "upload", "gallery", "video", "half a video"}) {
            for (const char *end : {"quit", "exit"})
                QTest::addRow("%s, %s", midst, end) << QString::fromLatin1(midst) << QString::fromLatin1(end);
        }
    }
    void leavesInTheMidst()
    {
        QFETCH(QString, midst);
        QFETCH(QString, end);
        QProcess process;
        if (end == u"exit"_s) { // Qt's own render thread does not survive that
            QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
            environment.insert(u"QSG_RENDER_LOOP"_s, u"basic"_s);
            process.setProcessEnvironment(environment);
        }
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start(QCoreApplication::applicationFilePath(), {u"--leave"_s, midst, end});
        QVERIFY(process.waitForFinished(120000));
        const QByteArray output = process.readAll();
        QVERIFY2(process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0, output);
        QVERIFY2(output.contains("in the midst") && !output.contains("Destroyed while"), output);
    }
};

namespace
{

// A host that shows a screen of the SDK, with a camera, a network and a server of its own.
class Host
{
public:
    Host()
        : m_address(m_server.url(QString()))
    {
        m_camera->scene = TestImages::quarters({600, 800});
        Platform::CaptureDevice::registerDevice(m_camera);
        m_server.setAnswer(RawServer::Answer::stall(RawServer::Stage::Head));
    }
    ~Host() { Platform::CaptureDevice::unregisterDevice(m_camera); }

    // Returns in the midst of it; false when it does not come to that.
    bool begin(const QString &midst)
    {
        if (midst == u"animation"_s)
            return beginAnimation();
        if (midst == u"upload"_s)
            return beginUpload();
        if (midst == u"video"_s)
            return beginVideo(RawServer::Stage::Everything);
        if (midst == u"half a video"_s)
            return beginVideo(RawServer::Stage::HalfBody);
        if (midst == u"gallery"_s)
            showGallery();
        else
            showAd();
        return isAsked();
    }

private:
    template <typename Screen>
    static std::unique_ptr<Screen> make()
    {
        return brevantoStoryboard().instantiate<Screen>(QString::fromLatin1(Screen::staticMetaObject.className()));
    }

    bool isAsked()
    {
        return QTest::qWaitFor([this] { return m_server.requestCount() > 0; }, 20000);
    }

    std::shared_ptr<BrevantoMatch> match() const
    {
        auto match = std::make_shared<BrevantoMatch>();
        match->setBackgroundImageUrl(m_server.url(u"/ad.jpg"_s));
        match->setXPercent(50);
        match->setYPercent(50);
        match->setImages(QVariantList{m_server.url(u"/1.jpg"_s), m_server.url(u"/2.jpg"_s)});
        return match;
    }

    BrevantoAdVC *showAd()
    {
        auto made = make<BrevantoAdVC>();
        BrevantoAdVC *ad = made.get();
        ad->setMatchGroup(BrevantoMatchGroup::initWithMatches({match()}, QString()));
        m_window.push(std::move(made));
        return ad;
    }

    void showGallery()
    {
        auto gallery = make<BrevantoPhotoGalleryVC>();
        gallery->setMatchObject(match());
        m_window.push(std::move(gallery));
    }

    // The ad's markers pulse and another screen is on its way in.
    bool beginAnimation()
    {
        RawServer::Answer picture;
        picture.body = TestImages::jpeg(TestImages::quarters({300, 400}));
        m_server.setAnswer(picture);
        BrevantoAdVC *ad = showAd();
        const auto hasMarkers = [ad] { return ad->view()->viewWithTag(BrevantoAdVC::firstHotspotTag) != nullptr; };
        if (!QTest::qWaitFor(hasMarkers, 20000))
            return false;
        Platform::NavigationController *stack = ad->navigationController();
        // Again, where a busy machine shows it at its end only.
        const auto isOnItsWay = [&] {
            if (!stack->isInTransition()) {
                if (stack->topViewController() != ad)
                    stack->popViewController(false);
                stack->pushViewController(make<BrevantoPhotoGalleryVC>(), true);
            }
            const Platform::View *screen = stack->topViewController()->view();
            return screen->x() > 0 && screen->x() < screen->width();
        };
        return QTest::qWaitFor(isOnItsWay, 20000);
    }

    // The server reads the beginning of a photo that is more than the system takes at once.
    bool beginUpload()
    {
        QImage noise(480, 8000, QImage::Format_Grayscale8);
        QRandomGenerator(1).fillRange(reinterpret_cast<quint32 *>(noise.bits()), noise.sizeInBytes() / 4);
        m_camera->jpeg = TestImages::jpeg(noise);
        m_server.setIntake(1000);
        auto made = make<BrevantoCameraVC>();
        BrevantoCameraVC *camera = made.get();
        m_window.push(std::move(made));
        if (!QTest::qWaitFor([this] { return m_camera->isDelivering(); }, 20000))
            return false;
        m_window.tap(camera->view()->findChild<QQuickItem *>(u"captureButton"_s));
        return QTest::qWaitFor([this] { return m_server.fullCount() > 0; }, 20000);
    }

    bool beginVideo(RawServer::Stage stage)
    {
        QFile clip(QStringLiteral(CLIPS "/velkesta-ride.mp4"));
        if (!clip.open(QIODevice::ReadOnly))
            return false;
        const RawServer::Answer answer{.body = clip.readAll(), .stage = stage};
        m_server.setHandler([answer](const RawServer::Request &request) {
            return request.target == "/clip.mp4" ? answer : RawServer::Answer{.status = 404};
        });
        BrevantoAdVC *ad = showAd();
        ad->openAvPlayerControllerWithUrl(m_server.url(u"/clip.mp4"_s));
        const auto *shown = qobject_cast<Platform::PlayerViewController *>(ad->presentedViewController());
        const auto isInTheMidst = [this, &answer, player = shown ? shown->player() : nullptr] {
            if (answer.stage == RawServer::Stage::Everything)
                return player->position() > 0;
            return m_server.sentSize() > answer.body.size() / 2 && player->isWaiting();
        };
        return shown && QTest::qWaitFor(isInTheMidst, 20000);
    }

    FakeReachability m_network;
    RawServer m_server;
    ServiceAddress::Override m_address;
    std::shared_ptr<FakeCamera> m_camera = std::make_shared<FakeCamera>();
    ScreenWindow m_window;
};

// By the end of the event loop, or by exit() in its midst, which takes nothing down that lives on stacks.
int leave(QGuiApplication &application, const QString &midst, const QString &end)
{
    QStandardPaths::setTestModeEnabled(true);
    Host host;
    QTimer::singleShot(0, &application, [&] {
        if (!host.begin(midst))
            return QCoreApplication::exit(1);
        std::puts("in the midst");
        std::fflush(stdout);
        if (end == u"exit"_s)
            std::exit(0);
        QCoreApplication::exit(0);
    });
    return QCoreApplication::exec();
}

} // namespace

int main(int argc, char *argv[])
{
    QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.value(1) == u"--leave"_s)
        return leave(application, arguments.value(2), arguments.value(3));
    tst_Leaving test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_Leaving.moc"
