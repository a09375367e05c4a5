#include "Platform/Capture/CaptureVideoPreviewLayer.h"
#include "Platform/Capture/ImageFileCamera.h"
#include "Platform/Foundation/DispatchQueue.h"
#include "support/FakeCamera.h"
#include "support/Table.h"
#include "support/TestImages.h"

#include <QGuiApplication>
#include <QPainter>
#include <QQuickWindow>
#include <QTemporaryDir>
#include <QTest>
#include <QVideoSink>

using namespace Qt::StringLiterals;
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
    void init()
    {
        m_window = std::make_unique<QQuickWindow>();
        m_window->resize(200, 200);
        m_window->setColor(Qt::magenta);
        m_window->show();
        QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
        m_session = std::make_shared<CaptureSession>();
    }

    void cleanup()
    {
        m_preview.reset();
        m_session.reset();
        m_window.reset();
    }

    void showsThePicture_data() { addBothRows("fits", "fill", "fit"); }
    void showsThePicture()
    {
        QFETCH(bool, fits);
        const QString path = m_folder.filePath(u"wide.png"_s);
        QVERIFY(TestImages::quarters({1600, 1000}).save(path));
        show(std::make_shared<ImageFileCamera>(path),
             fits ? CaptureVideoGravity::ResizeAspect : CaptureVideoGravity::ResizeAspectFill);
        QCOMPARE(seen(), u"kkkk"_s);
        m_session->startRunning();
        QTRY_COMPARE(seen(), u"rgbw"_s);
        // The middle of the upper edge: beside the picture, or the green right of it.
        QCOMPARE(pixel(110, 5), fits ? QColor(Qt::black) : QColor(0, 255, 0));
    }

    void followsTheZoom()
    {
        // A white rim around the quarters, which a zoom of two cuts off.
        QImage rimmed(400, 400, QImage::Format_RGB32);
        rimmed.fill(Qt::white);
        QPainter(&rimmed).drawImage(100, 100, TestImages::quarters({200, 200}));
        const QString path = m_folder.filePath(u"rimmed.png"_s);
        QVERIFY(rimmed.save(path));

        const auto camera = std::make_shared<ImageFileCamera>(path);
        show(camera);
        m_session->startRunning();
        QTRY_COMPARE(pixel(80, 80), QColor(255, 0, 0));
        QCOMPARE(pixel(20, 20), QColor(Qt::white));
        QVERIFY(camera->lockForConfiguration());
        camera->rampToVideoZoomFactor(2.0, 3.0);
        camera->unlockForConfiguration();
        QTRY_COMPARE(pixel(20, 20), QColor(255, 0, 0));
    }

    void freezesWhenStopped()
    {
        const auto camera = showFake();
        const CaptureDevice::FrameHandler frames = camera->frames;
        frames(filled(QColor(255, 0, 0)));
        QTRY_COMPARE(seen(), u"rrrr"_s);

        frames(filled(QColor(0, 255, 0))); // on its way, and overtaken by the stop
        {
            DispatchQueue queue(u"session queue"_s, DispatchQueue::Kind::Serial);
            queue.async([this] { m_session->stopRunning(); });
        }
        frames(filled(QColor(0, 0, 255)));
        QTRY_VERIFY(!camera->frames);
        QCOMPARE(seen(), u"rrrr"_s);
        m_preview->setFrame(QRectF(0, 0, 200, 199));
        QCOMPARE(seen(), u"rrrr"_s);

        m_session->startRunning();
        camera->frames(filled(QColor(0, 0, 255)));
        QTRY_COMPARE(seen(), u"bbbb"_s);
    }

    void keepsTheNewestFrameOnly()
    {
        const auto camera = showFake();
        const auto *sink =
            m_preview->findChild<QQuickItem *>(u"videoOutput"_s)->property("videoSink").value<QVideoSink *>();
        int shown = 0;
        connect(sink, &QVideoSink::videoFrameChanged, this, [&shown] { ++shown; });
        {
            DispatchQueue queue(u"camera"_s, DispatchQueue::Kind::Serial);
            for (int i = 0; i < 50; ++i)
                queue.async([frames = camera->frames] { frames(filled(QColor(255, 0, 0))); });
            queue.async([frames = camera->frames] { frames(filled(QColor(0, 255, 0))); });
        }
        QTRY_COMPARE(seen(), u"gggg"_s);
        QCOMPARE(shown, 1);
    }

    void goesWhileRunning()
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

    void leavesTheCameraInTheBackground()
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

private:
    void show(const std::shared_ptr<CaptureDevice> &device,
              CaptureVideoGravity gravity = CaptureVideoGravity::ResizeAspectFill)
    {
        m_session->addInput(CaptureDeviceInput::deviceInputWithDevice(device));
        m_preview = std::make_unique<CaptureVideoPreviewLayer>(m_session);
        m_preview->setParentItem(m_window->contentItem());
        m_preview->setFrame(QRectF(0, 0, 200, 200));
        m_preview->setVideoGravity(gravity);
    }

    // Shows a camera whose frames the test sends.
    std::shared_ptr<FakeCamera> showFake()
    {
        const auto camera = std::make_shared<FakeCamera>();
        show(camera);
        m_session->startRunning();
        return camera;
    }

    QColor pixel(int x, int y) const { return m_window->grabWindow().pixelColor(x, y); }
    QString seen() const { return TestImages::seenIn(m_window->grabWindow()); }

    QTemporaryDir m_folder;
    std::unique_ptr<QQuickWindow> m_window;
    std::shared_ptr<CaptureSession> m_session;
    std::unique_ptr<CaptureVideoPreviewLayer> m_preview;
};

QTEST_MAIN(tst_CapturePreview)
#include "tst_CapturePreview.moc"
