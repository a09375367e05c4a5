#include "Platform/Capture/CaptureVideoPreviewLayer.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "support/FakeCamera.h"
#include "support/TestImages.h"

#include <QGuiApplication>
#include <QPainter>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QVideoSink>

using namespace Platform;

namespace
{

QVideoFrame filled(const QColor &color)
{
    QImage image(32, 32, QImage::Format_RGB32);
    image.fill(color);
    return FakeCamera::frameOf(image);
}

} // namespace

class tst_CapturePreview : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void showsThePicture_data();
    void showsThePicture();
    void followsTheZoom();
    void freezesWhenStopped();
    void keepsTheNewestFrameOnly();
    void goesWhileRunning();
    void leavesTheCameraInTheBackground();

private:
    void show(const std::shared_ptr<CaptureDevice> &device,
              CaptureVideoGravity gravity = CaptureVideoGravity::ResizeAspectFill);
    // Shows a camera whose frames the test sends.
    std::shared_ptr<FakeCamera> showFake();
    QString seen() const { return TestImages::seenIn(m_window->grabWindow()); }

    QTemporaryDir m_folder;
    std::unique_ptr<QQuickWindow> m_window;
    std::shared_ptr<CaptureSession> m_session;
    std::unique_ptr<CaptureVideoPreviewLayer> m_preview;
};

void tst_CapturePreview::init()
{
    m_window = std::make_unique<QQuickWindow>();
    m_window->resize(200, 200);
    m_window->setColor(Qt::magenta);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_session = std::make_shared<CaptureSession>();
}

void tst_CapturePreview::cleanup()
{
    m_preview.reset();
    m_session.reset();
    m_window.reset();
}

void tst_CapturePreview::show(const std::shared_ptr<CaptureDevice> &device, CaptureVideoGravity gravity)
{
    m_session->addInput(CaptureDeviceInput::deviceInputWithDevice(device));
    m_preview = std::make_unique<CaptureVideoPreviewLayer>(m_session);
    m_preview->setParentItem(m_window->contentItem());
    m_preview->setFrame(QRectF(0, 0, 200, 200));
    m_preview->setVideoGravity(gravity);
}

std::shared_ptr<FakeCamera> tst_CapturePreview::showFake()
{
    const auto camera = std::make_shared<FakeCamera>();
    show(camera);
    m_session->startRunning();
    return camera;
}

void tst_CapturePreview::showsThePicture_data()
{
    QTest::addColumn<CaptureVideoGravity>("gravity");
    QTest::addColumn<QColor>("top"); // the middle of the upper edge: beside the picture, or green to the right of it
    QTest::newRow("fill") << CaptureVideoGravity::ResizeAspectFill << QColor(0, 255, 0);
    QTest::newRow("fit") << CaptureVideoGravity::ResizeAspect << QColor(Qt::black);
}

void tst_CapturePreview::showsThePicture()
{
    QFETCH(CaptureVideoGravity, gravity);
    const QString path = m_folder.filePath(QStringLiteral("wide.png"));
    QVERIFY(TestImages::quarters({1600, 1000}).save(path));
    show(std::make_shared<ImageFileCamera>(path), gravity);
    QCOMPARE(seen(), QStringLiteral("kkkk"));
    m_session->startRunning();
    QTRY_COMPARE(seen(), QStringLiteral("rgbw"));
    QTEST(m_window->grabWindow().pixelColor(110, 5), "top");
}

void tst_CapturePreview::followsTheZoom()
{
    // A white rim around the quarters, which a zoom of two cuts off.
    QImage rimmed(400, 400, QImage::Format_RGB32);
    rimmed.fill(Qt::white);
    QPainter(&rimmed).drawImage(100, 100, TestImages::quarters({200, 200}));
    const QString path = m_folder.filePath(QStringLiteral("rimmed.png"));
    QVERIFY(rimmed.save(path));

    const auto camera = std::make_shared<ImageFileCamera>(path);
    show(camera);
    m_session->startRunning();
    QTRY_COMPARE(m_window->grabWindow().pixelColor(80, 80), QColor(255, 0, 0));
    QCOMPARE(m_window->grabWindow().pixelColor(20, 20), QColor(Qt::white));
    QVERIFY(camera->lockForConfiguration());
    camera->rampToVideoZoomFactor(2.0, 3.0);
    camera->unlockForConfiguration();
    QTRY_COMPARE(m_window->grabWindow().pixelColor(20, 20), QColor(255, 0, 0));
}

void tst_CapturePreview::freezesWhenStopped()
{
    const auto camera = showFake();
    const CaptureDevice::FrameHandler frames = camera->frames;
    frames(filled(QColor(255, 0, 0)));
    QTRY_COMPARE(seen(), QStringLiteral("rrrr"));

    frames(filled(QColor(0, 255, 0))); // on its way, and overtaken by the stop
    {
        DispatchQueue queue(QStringLiteral("session queue"), DispatchQueue::Kind::Serial);
        queue.async([this] { m_session->stopRunning(); });
    }
    frames(filled(QColor(0, 0, 255)));
    QTRY_VERIFY(!camera->frames);
    QCOMPARE(seen(), QStringLiteral("rrrr"));
    m_preview->setFrame(QRectF(0, 0, 200, 199));
    QCOMPARE(seen(), QStringLiteral("rrrr"));

    m_session->startRunning();
    camera->frames(filled(QColor(0, 0, 255)));
    QTRY_COMPARE(seen(), QStringLiteral("bbbb"));
}

void tst_CapturePreview::keepsTheNewestFrameOnly()
{
    const auto camera = showFake();
    const auto *sink =
        m_preview->findChild<QQuickItem *>(QStringLiteral("videoOutput"))->property("videoSink").value<QVideoSink *>();
    int shown = 0;
    connect(sink, &QVideoSink::videoFrameChanged, this, [&shown] { ++shown; });
    {
        DispatchQueue queue(QStringLiteral("camera"), DispatchQueue::Kind::Serial);
        for (int i = 0; i < 50; ++i)
            queue.async([frames = camera->frames] { frames(filled(QColor(255, 0, 0))); });
        queue.async([frames = camera->frames] { frames(filled(QColor(0, 255, 0))); });
    }
    QTRY_COMPARE(seen(), QStringLiteral("gggg"));
    QCOMPARE(shown, 1);
}

void tst_CapturePreview::goesWhileRunning()
{
    const auto camera = showFake();
    const CaptureDevice::FrameHandler frames = camera->frames;
    frames(filled(QColor(255, 0, 0)));
    m_preview.reset();
    frames(filled(QColor(255, 0, 0)));
    m_session.reset();
    frames(filled(QColor(255, 0, 0)));
    QTRY_VERIFY(!camera->frames);
    QCoreApplication::processEvents();
}

void tst_CapturePreview::leavesTheCameraInTheBackground()
{
    const auto camera = showFake();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
    QVERIFY(!camera->frames);
    QVERIFY(m_session->isRunning());
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QVERIFY(camera->frames);

    m_session->stopRunning();
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationSuspended);
    Q_EMIT qGuiApp->applicationStateChanged(Qt::ApplicationActive);
    QVERIFY(!camera->frames);
}

QTEST_MAIN(tst_CapturePreview)
#include "tst_CapturePreview.moc"
