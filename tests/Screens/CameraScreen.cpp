#include "CameraScreen.h"

#include "Brevanto/BrevantoBundle.h"
#include "Platform/Interface/AlertController.h"
#include "support/TestImages.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>
#include <QThreadPool>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

CameraScreen::CameraScreen(const QSize &size)
    : window(size)
    , m_address(server.url(QString()))
{
    network();
    Platform::View::setAnimationsEnabled(false);
    camera->scene = TestImages::quarters({600, 800});
    camera->jpeg = photo();
    Platform::CaptureDevice::registerDevice(camera);
    prepareAnswer(matches({}));
}

CameraScreen::~CameraScreen()
{
    network().setOnline();
    Platform::CaptureDevice::unregisterDevice(camera);
    Platform::View::setAnimationsEnabled(true);
}

FakeReachability &CameraScreen::network()
{
    static FakeReachability network;
    return network;
}

ManualClock &CameraScreen::sharedClock()
{
    static auto *clock = new ManualClock;
    return *clock;
}

void CameraScreen::open()
{
    auto made = brevantoStoryboard().instantiate<BrevantoCameraVC>(u"BrevantoCameraVC"_s);
    screen = made.get();
    auto stack = std::make_unique<Platform::NavigationController>(std::move(made));
    navigation = stack.get();
    bool appeared = false;
    window.root()->present(std::move(stack), false, [&] { appeared = true; });
    if (!QTest::qWaitFor([&] { return appeared; }))
        qFatal("The camera screen did not appear");
}

QQuickItem *CameraScreen::item(const QString &objectName) const
{
    return screen->view()->findChild<QQuickItem *>(objectName);
}

void CameraScreen::tap(const QString &objectName)
{
    window.tap(item(objectName));
}

Platform::AlertController *CameraScreen::alert() const
{
    return screen ? qobject_cast<Platform::AlertController *>(screen->presentedViewController()) : nullptr;
}

QString CameraScreen::alertTitle() const
{
    const Platform::AlertController *shown = alert();
    return shown ? shown->title() : QString();
}

QString CameraScreen::alertText() const
{
    QStringList texts{alert()->title(), alert()->message()};
    for (const Platform::AlertAction &action : alert()->actions())
        texts += u"%1/%2"_s.arg(action.title).arg(int(action.style));
    return texts.join(u'|');
}

bool CameraScreen::choose(const QString &buttonTitle)
{
    const QPointer<Platform::AlertController> shown(alert());
    return QTest::qWaitFor([&] {
        if (!shown)
            return true;
        // An alert that is still appearing takes no touches.
        if (const QQuickItem *button =
                window.find([&](QQuickItem *item) { return item->property("text").toString() == buttonTitle; }))
            window.tap(button);
        return false;
    });
}

bool CameraScreen::wait(std::chrono::milliseconds duration)
{
    const auto end = clock.now() + duration;
    while (clock.now() < end) {
        clock.advance(std::min<std::chrono::milliseconds>(2s, end - clock.now()));
        // The network's thread asks for the time when the byte has come.
        const int reads = clock.readCount();
        server.resume(1);
        if (!QTest::qWaitFor([&] { return clock.readCount() > reads; }))
            return false;
    }
    return true;
}

bool CameraScreen::advanceUntil(const std::function<bool()> &condition)
{
    return QTest::qWaitFor(
        [&] {
            if (condition())
                return true;
            clock.advance(5ms);
            return condition();
        },
        10000);
}

QByteArray CameraScreen::photo()
{
    return TestImages::jpeg(TestImages::quarters({300, 400}));
}

bool CameraScreen::tapShutter()
{
    if (!QTest::qWaitFor([this] { return camera->isDelivering(); }))
        return false;
    camera->jpeg.clear();
    tap(u"captureButton"_s);
    return QTest::qWaitFor([this] { return bool(camera->photo); });
}

void CameraScreen::deliver(const QByteArray &jpeg)
{
    std::shared_ptr<Platform::CaptureSampleBuffer> buffer;
    if (!jpeg.isEmpty())
        buffer = std::make_shared<Platform::CaptureSampleBuffer>(Platform::CaptureSampleBuffer{jpeg, {}});
    const std::weak_ptr lookedAt = buffer;
    std::exchange(camera->photo, {})(std::exchange(buffer, nullptr), u"no light"_s);
    std::atomic_bool isSettled = false;
    if (!QTest::qWaitFor([&] { return lookedAt.expired(); }))
        qFatal("The photo was not looked at");
    QCoreApplication::processEvents();
    QThreadPool::globalInstance()->waitForDone();
    QCoreApplication::processEvents();
    screen->sessionQueue()->async([&] { isSettled = true; });
    if (!QTest::qWaitFor([&] { return isSettled.load(); }))
        qFatal("The capture session hangs");
}

bool CameraScreen::shoot()
{
    const int before = server.requestCount();
    if (!QTest::qWaitFor([this] { return camera->isDelivering(); }))
        return false;
    tap(u"captureButton"_s);
    return advanceUntil([this] { return screen->isRequestOnProcess(); })
        && QTest::qWaitFor([&] { return server.requestCount() > before; });
}

RawServer::Answer CameraScreen::matches(const QStringList &adImages)
{
    QJsonArray list;
    for (const QString &image : adImages)
        list.append(QJsonObject{{u"app_img"_s, image}, {u"title"_s, image}});
    const QJsonObject envelope{{u"status"_s, QJsonObject{{u"code"_s, 0}}}, {u"matches"_s, list}};
    return RawServer::Answer::json(QJsonDocument(envelope).toJson());
}

void CameraScreen::prepareAnswer(RawServer::Answer answer, RawServer::Stage stage)
{
    answer.stage = stage;
    server.setAnswer(answer);
}
